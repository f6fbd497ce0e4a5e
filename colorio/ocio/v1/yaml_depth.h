#pragma once

#include <string>

namespace ocio {

/// OpenColorIO's YAML reader calls itself for every level of nesting. Throws when the file at `path` seems to
/// nest more than 500 levels, judged by its brackets and columns. That is an estimate: brackets in quoted
/// text count. A file that cannot be opened passes: OpenColorIO reports why.
void require_shallow_yaml(const std::string& path);

} // namespace ocio
