#pragma once

#include "exact_pixel.h"
#include "pixel/ops.h"

namespace pixel_test {

/// RGB curves in double precision, the control points as floats; alpha stays.
ExactPixel evaluate_curves_exactly(const pixel::RgbCurve& curves, const ExactPixel& in);

/// The logarithm that the linear style of gradings works on, and back.
double lin_to_log_exactly(double x);
double log_to_lin_exactly(double y);

} // namespace pixel_test
