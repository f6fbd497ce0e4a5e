#pragma once

#include "image/byte_source.h"

namespace image {

/// Throws EndReached when the directories of a TIFF or BigTIFF file, or the strips or tiles that they name,
/// reach beyond the end of the file, or when uncompressed pixels have fewer bytes than they need.
/// `may_be_sparse`: strips without a position, and arrays that are not of strips, are not looked at.
void check_tiff_end(ByteSource& file, bool may_be_sparse);

} // namespace image
