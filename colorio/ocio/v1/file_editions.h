#pragma once

#include "colorio/ocio/conversion_check.h"
#include "colorio/ocio/rewritten_conversion.h"

/// OpenColorIO caches LUT and CDL files by the path that is asked for. Clearing its cache would break it:
/// afterwards it refuses every file of corrections that was read before in the process. So an edited file is
/// read through another spelling of its path, "luts/./film.spi1d".
namespace ocio {

/// From now on, files that changed since they were read are read again.
void forget_file_editions();

/// `conversion` itself, or copies that read those of its files again that changed before the last
/// `forget_file_editions`. `parts` are the conversion's.
Conversion with_current_editions(const Conversion& conversion, const ConversionParts& parts);

/// `path` spelled in another way for every number; 0 leaves it as it is.
std::string spell_edition(const std::string& path, unsigned edition);

} // namespace ocio
