#pragma once

#include <string>

#include "colorio/ocio/rewritten_conversion.h"

/// The library looks for context variables in the whole path of a file, in the folders of the config and of
/// its search path too. A file below a folder called "c$x" or "100%" is then not found.
namespace ocio {

/// Where the file of a file transform lies: variables are replaced in `source` and in the search path, and
/// variables in their values are not replaced. Empty when the file does not exist.
std::string locate_file(const ConstConfigRcPtr& config, const std::string& source);

/// The conversion itself or, where the path of a file of it holds `$` or `%`, a copy with such files named by
/// absolute path, every variable replaced and none left in its config. `parts` are the conversion's, and
/// afterwards those of the result.
Conversion with_literal_paths(const Conversion& conversion, ConversionParts& parts);

} // namespace ocio
