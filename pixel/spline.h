#pragma once

#include <vector>

#include "pixel/ops.h"
#include "pixel/stage.h"

namespace pixel {

/// Quadratic pieces through the control points, with their slopes or, if all of these are 0, estimated ones.
/// Every step is rounded to `T`; with floats as in the reference renderer. Points on the diagonal without
/// slopes are the identity. Throws std::invalid_argument for fewer than 2 points or a falling x.
template <class T>
Spline<T> fit_spline(const std::vector<ControlPoint>& points);

/// The pieces with the x at which each starts, or for the inverse the y.
template <class T>
SplineTable<T> spline_table(const Spline<T>& spline, bool forward);

extern template Spline<float> fit_spline<float>(const std::vector<ControlPoint>& points);
extern template Spline<double> fit_spline<double>(const std::vector<ControlPoint>& points);

extern template SplineTable<float> spline_table<float>(const Spline<float>& spline, bool forward);
extern template SplineTable<double> spline_table<double>(const Spline<double>& spline, bool forward);

} // namespace pixel
