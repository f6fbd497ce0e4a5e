#pragma once

#include "colorio/ocio/rewritten_conversion.h"

/// The library remembers what it read of a LUT or CDL file by the path that it was asked for. Its own way to
/// forget would break it: from then on it refuses every file of corrections that anyone in the process had
/// it read. So an edited file is asked for by another spelling of its path, "luts/./film.spi1d".
namespace ocio {

/// From now on, files that changed since they were read are read again.
void forget_file_editions();

/// `conversion` itself, or copies that ask anew for those of its files that changed before the last
/// `forget_file_editions`. `parts` are the conversion's.
Conversion with_current_editions(const Conversion& conversion, const ConversionParts& parts);

/// `path` spelled in another way for every number; 0 leaves it as it is.
std::string spell_edition(const std::string& path, unsigned edition);

} // namespace ocio
