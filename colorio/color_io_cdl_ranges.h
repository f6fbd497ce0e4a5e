#pragma once

#include <cmath>

/// The kinds of numbers in a color correction.
enum class CDLNumber {
    SLOPE,      ///< Not negative.
    OFFSET,     ///< Any finite number.
    POWER,      ///< Above 0.
    SATURATION, ///< Not negative.
};

/// Whether the ASC CDL allows the number: every one is finite, slope and saturation are not negative, and
/// power is above 0.
inline bool is_valid_CDL_number(CDLNumber kind, double value) {
    if (!std::isfinite(value))
        return false;
    switch (kind) {
    case CDLNumber::SLOPE:
    case CDLNumber::SATURATION:
        return value >= 0;
    case CDLNumber::POWER:
        return value > 0;
    default:
        return true;
    }
}
