#pragma once

#include <optional>

#include "colorio/ocio/types.h"
#include "pixel/ops.h"

namespace ocio {

/// How this version of the library interpolates in forward tables when it converts images on this
/// processor; nothing where that has not been measured. (From 2.5 on its single pixels go another way.)
std::optional<pixel::TableArithmetic> table_arithmetic();

/// The entries of the library's tables as plain data, with the arithmetic left at its default.
pixel::Lut1D read_table(const library::Lut1DTransform& transform, pixel::Direction direction);
pixel::Lut3D read_cube(const library::Lut3DTransform& transform);

} // namespace ocio
