#pragma once

#include <optional>

#include "colorio/ocio/types.h"
#include "pixel/ops.h"

namespace ocio {

/// How this version of OpenColorIO interpolates in forward LUTs when it converts images on this processor;
/// empty if that has not been measured. (From 2.5 on its arithmetic for single pixels differs.)
std::optional<pixel::TableArithmetic> table_arithmetic();

/// A LUT of OpenColorIO as plain data, with the default arithmetic.
pixel::Lut1D read_table(const library::Lut1DTransform& transform, pixel::Direction direction);
pixel::Lut3D read_cube(const library::Lut3DTransform& transform);

/// LUTs of OpenColorIO as operations of `pixel/`. Throw NotKnown for those that it cannot compute.
pixel::Op translate_op(const library::Lut1DTransform& t);
pixel::Op translate_op(const library::Lut3DTransform& t);

} // namespace ocio
