#pragma once

#include <string>

namespace workflow {
class Session;
} // namespace workflow

namespace tool {

class Console;

/// Saves the associations, and tells what the category is now and what keeps that from having its effect.
void finish_format_change(workflow::Session& session, const std::string& category, Console& console);

/// Tells that a mapping file hides what was changed, where one does.
void note_mapping_file(const workflow::Session& session, Console& console);

} // namespace tool
