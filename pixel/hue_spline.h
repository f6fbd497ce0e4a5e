#pragma once

#include <vector>

#include "pixel/ops.h"
#include "pixel/stage.h"

namespace pixel {

/// True for a curve that changes nothing: points on the diagonal, or at the neutral value, without slopes.
bool is_neutral(HueCurveKind kind, const std::vector<ControlPoint>& points);

/// Quadratic pieces through the control points of one of the hue curves, empty for neutral ones. Curves over
/// the hue are continued beyond both ends of [0, 1]. Every step is rounded to floats, as in the reference
/// renderer. Throws std::invalid_argument for fewer than 2 points.
Spline<float> fit_hue_spline(HueCurveKind kind, const std::vector<ControlPoint>& points);

} // namespace pixel
