#pragma once

#include <string>

namespace workflow {
class Session;
} // namespace workflow

namespace tool {

class Console;

/// Saves the associations, prints the changed category, and warns of what keeps it from taking effect.
void finish_format_change(workflow::Session& session, const std::string& category, Console& console);

} // namespace tool
