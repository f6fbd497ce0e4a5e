#pragma once

#include "exact_pixel.h"
#include "pixel/ops.h"

namespace pixel_test {

/// Gradings in double precision, either direction; alpha stays.
ExactPixel evaluate_exposure_exactly(const pixel::ExposureContrast& op, const ExactPixel& in);
ExactPixel evaluate_primary_exactly(const pixel::GradingPrimary& op, const ExactPixel& in);
ExactPixel evaluate_tone_exactly(const pixel::GradingTone& op, const ExactPixel& in);

} // namespace pixel_test
