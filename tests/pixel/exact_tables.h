#pragma once

#include "exact_pixel.h"
#include "pixel/ops.h"

namespace pixel_test {

/// A LUT in double precision, either direction of 1D LUTs; alpha is unchanged.
ExactPixel evaluate_table_exactly(const pixel::Lut1D& table, const ExactPixel& in);
ExactPixel evaluate_cube_exactly(const pixel::Lut3D& cube, const ExactPixel& in);

/// The position of the first tetrahedron that gives the values, over all cells in their order.
ExactPixel evaluate_inverse_cube_exactly(const pixel::Lut3D& cube, const ExactPixel& in);

} // namespace pixel_test
