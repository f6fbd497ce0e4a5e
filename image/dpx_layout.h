#pragma once

#include "image/byte_source.h"

namespace image {

/// Throws EndReached when a DPX file is shorter than its header says.
void check_dpx_end(ByteSource& file);

/// Throws EndReached when the pixels that the headers of a DPX file describe reach beyond its end.
void check_dpx_pixels(ByteSource& file);

} // namespace image
