#pragma once

#include <cstddef>

#include "pixel/stage.h"

namespace pixel {

/// Prepares the inverse of `length` entries of a table. Entries that break the direction given by the two
/// ends are raised (lowered) to their predecessor; flat ends are cut off. Throws std::invalid_argument on NaN
/// and infinity.
InverseCurve make_inverse_curve(const float* entries, std::size_t length);

/// Position of `value` among the entries by bisection, between the last entry below it and the next one.
/// `value` is signed as the entries are, and lies between the first and the last of them.
float search_position(const InverseCurve& curve, float value);

} // namespace pixel
