#pragma once

#include <algorithm>
#include <array>
#include <cmath>

/// The built-in curves and the ASC CDL in double precision, from their published formulas.
namespace formula {

/// The built-in tables cover encoded values from -0.125 to 1.125; what lies outside is clamped.
inline constexpr double DOMAIN_MIN = -0.125;
inline constexpr double DOMAIN_MAX = 1.125;

inline double clamp_to_domain(double encoded) {
    return std::clamp(encoded, DOMAIN_MIN, DOMAIN_MAX);
}

/// IEC 61966-2-1 decoding; the linear segment runs on below 0, the power segment above 1.
inline double srgb_to_linear(double encoded) {
    const double x = clamp_to_domain(encoded);
    return x >= 0.04045 ? std::pow((x + 0.055) / 1.055, 2.4) : x / 12.92;
}

inline double linear_to_srgb(double linear) {
    const double threshold = std::pow((0.04045 + 0.055) / 1.055, 2.4);
    return clamp_to_domain(linear >= threshold ? 1.055 * std::pow(std::max(linear, 0.0), 1 / 2.4) - 0.055
                                               : linear * 12.92);
}

/// Cineon 10-bit log: 300 code values per decade, white at 685, black at 95.
inline const double CINEON_BLACK = std::pow(10.0, (95.0 - 685.0) / 300.0);

inline double cineon_to_linear(double encoded) {
    const double code = 1023 * clamp_to_domain(encoded);
    return (std::pow(10.0, (code - 685) / 300) - CINEON_BLACK) / (1 - CINEON_BLACK);
}

inline double linear_to_cineon(double linear) {
    const double density = linear * (1 - CINEON_BLACK) + CINEON_BLACK;
    return density <= 0 ? DOMAIN_MIN : clamp_to_domain((300 * std::log10(density) + 685) / 1023);
}

using Rgb = std::array<double, 3>;

/// ASC CDL v1.2 for colors whose every intermediate value lies in [0, 1]: no clamp comes into play there.
struct Cdl {
    Rgb slope = {1, 1, 1};
    Rgb offset = {0, 0, 0};
    Rgb power = {1, 1, 1};
    double saturation = 1;

    Rgb apply(Rgb color) const {
        for (int i = 0; i < 3; ++i)
            color[i] = std::pow(color[i] * slope[i] + offset[i], power[i]);
        return saturate(color, saturation);
    }
    Rgb undo(const Rgb& color) const {
        Rgb result = saturate(color, 1 / saturation);
        for (int i = 0; i < 3; ++i)
            result[i] = (std::pow(result[i], 1 / power[i]) - offset[i]) / slope[i];
        return result;
    }

private:
    /// Rec. 709 luma is kept, chroma scaled.
    static Rgb saturate(const Rgb& color, double amount) {
        const double luma = 0.2126 * color[0] + 0.7152 * color[1] + 0.0722 * color[2];
        return {luma + amount * (color[0] - luma), luma + amount * (color[1] - luma),
                luma + amount * (color[2] - luma)};
    }
};

} // namespace formula
