#pragma once

#include <string>

namespace workflow {

/// Writes `text` to the file at `path`; an existing file is replaced only when writing succeeds. Throws
/// diagnostics::Failure.
void write_text_file(const std::string& path, const std::string& text);

} // namespace workflow
