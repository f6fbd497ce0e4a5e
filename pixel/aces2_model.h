#pragma once

#include "pixel/aces2.h"

/// The color appearance model and tone curve of ACES 2.0 for single colors, with which its tables are made.
namespace pixel {

/// Red, green and blue; or lightness, colorfulness and hue in degrees; or a response and two opponent colors.
using Color3 = std::array<float, 3>;

constexpr Chromaticities AP0{0.7347, 0.2653, 0, 1, 0.0001, -0.0770, 0.32168, 0.33767};
constexpr Chromaticities AP1{0.713, 0.293, 0.165, 0.830, 0.128, 0.044, 0.32168, 0.33767};

AppearanceModel make_appearance_model();
AppearanceMatrices make_appearance_matrices(const AppearanceModel& model, const Chromaticities& primaries);

Color3 multiply(const Matrix3& m, const Color3& v);
/// The achromatic response and two opponent colors.
Color3 rgb_to_aab(const AppearanceMatrices& matrices, const Color3& rgb);
Color3 rgb_to_jmh(const AppearanceModel& model, const AppearanceMatrices& matrices, const Color3& rgb);
Color3 jmh_to_rgb(const AppearanceModel& model, const AppearanceMatrices& matrices, const Color3& jmh);
/// The base-10 logarithm, rounded once, as by recent C libraries only.
float decades_of(float v);
/// J of a luminance in nit.
float luminance_to_j(const AppearanceModel& model, float luminance);

ToneCurve make_tone_curve(float peak);
CompressionFactors make_compression_factors(const AppearanceModel& model, const ToneCurve& tone, float peak);

} // namespace pixel
