#pragma once

#include <string>

namespace ocio {

/// The library's YAML reader calls itself for every level of nesting. Throws when the file at `path` nests,
/// or seems to nest, more than 500 levels. A file that cannot be opened passes: the library says why.
void require_shallow_yaml(const std::string& path);

} // namespace ocio
