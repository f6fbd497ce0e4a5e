#pragma once

#include <optional>
#include <string>

#include "colorio/ocio/yaml_size.h"

namespace ocio {

/// The first error of structure in the config file at `path`: the root is not a map with a version, the value
/// of a key is not the map or list that it must be, a color space lacks a name, or two have the same one.
/// Nothing for a file without such an error and for one with an error of syntax.
std::optional<YamlError> find_structure_error(const std::string& path);

} // namespace ocio
