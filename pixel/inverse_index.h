#pragma once

#include <cstddef>

#include "pixel/stage.h"

namespace pixel {

/// Prepares the inverse of `length` entries of a table that rises or falls. Entries that break the direction
/// are raised (lowered) to their predecessor; flat ends are cut off. Throws std::invalid_argument on NaN and
/// infinity.
InverseCurve make_inverse_curve(const float* entries, std::size_t length, bool rising_table);

/// Between entry `index` and the next one, `part` of the way.
struct Position {
    std::size_t index;
    float part;
};

/// Position of `value` among the entries by bisection, between the last entry below it and the next one.
/// `value` is signed as the sorted entries are, and lies between the first and the last of them. The part for
/// NaN is NaN, but 0 in a curve of one entry.
Position search_position(const InverseCurve& curve, float value);

} // namespace pixel
