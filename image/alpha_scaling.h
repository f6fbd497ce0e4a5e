#pragma once

#include <cstddef>

#include "image/part_plan.h"

namespace image {

// `working` are red, green, blue, alpha floats. Color whose alpha is 0 is not divided.

/// Divides colors by alpha, if the plan does so before the conversion.
void undo_alpha(const PartPlan& plan, float* working, std::size_t pixels);
/// Multiplies or divides them by alpha, as the plan does after the conversion.
void redo_alpha(const PartPlan& plan, float* working, std::size_t pixels);

} // namespace image
