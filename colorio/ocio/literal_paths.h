#pragma once

#include "colorio/ocio/conversion_check.h"
#include "colorio/ocio/rewritten_conversion.h"

/// OpenColorIO replaces context variables in the whole path of a file, including the folders of the config
/// and of its search path. A file in a folder called "c$x" or "100%" is then not found.
namespace ocio {

/// The conversion itself or, if the path of one of its files contains `$` or `%`, a copy that uses absolute
/// paths for such files, with every variable replaced and without variables in its config. `parts` are those
/// of the conversion, and afterwards those of the result.
Conversion with_literal_paths(const Conversion& conversion, ConversionParts& parts);

} // namespace ocio
