#pragma once

#include "exact_pixel.h"
#include "pixel/ops.h"

namespace pixel_test {

/// Fixed functions in double precision, either direction; alpha stays.
ExactPixel evaluate_function_exactly(const pixel::FixedFunction& function, const ExactPixel& in);

} // namespace pixel_test
