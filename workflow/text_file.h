#pragma once

#include <string>

namespace workflow {

/// Replaces the file at `path` by one that holds `text`, whole or not at all. Throws diagnostics::Failure.
void write_text_file(const std::string& path, const std::string& text);

} // namespace workflow
