#pragma once

#include <cstddef>

#include "pixel/stage.h"

namespace pixel {

/// Prepares the inverse of `length` entries of a rising or falling LUT. Entries against the direction are
/// raised (lowered) to their predecessor; flat ends are removed. Throws std::invalid_argument for NaN and
/// infinity.
InverseCurve make_inverse_curve(const float* entries, std::size_t length, bool rising_table);

/// A position between two entries.
struct Position {
    std::size_t index; ///< the entry before
    float part;        ///< fraction of the way to the next entry
};

/// Position of `value` among the entries by bisection, between the last entry below it and the next one.
/// `value` is signed as the sorted entries are, and lies between the first and the last of them. The part for
/// NaN is NaN, but 0 in a curve of one entry.
Position search_position(const InverseCurve& curve, float value);

} // namespace pixel
