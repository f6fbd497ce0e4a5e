#pragma once

#include <optional>
#include <string>

#include "colorio/ocio/yaml_size.h"

namespace ocio {

/// The first error of structure in the config file at `path`: that it is no map with a version, that the
/// value of a key is no map or no list where one is needed, that a color space has no name or the name of
/// another one. Nothing when there is none, or an error of syntax.
std::optional<YamlError> find_structure_error(const std::string& path);

} // namespace ocio
