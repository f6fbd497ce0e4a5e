#pragma once

#include "colorio/ocio/types.h"
#include "pixel/ops.h"

namespace ocio {

/// The entries of the library's tables as plain data.
pixel::Lut1D read_table(const library::Lut1DTransform& transform, pixel::Direction direction);
pixel::Lut3D read_cube(const library::Lut3DTransform& transform);

} // namespace ocio
