#pragma once

#include <array>
#include <cstddef>
#include <vector>

/// Constants and tables of the ACES 2.0 functions. All of them are computed in floats, each step rounded, in
/// the order of the reference renderer: its tables come from searches, whose results jump with roundings.
namespace pixel {

/// x and y of red, green, blue and white.
using Chromaticities = std::array<double, 8>;

/// Three rows of three.
using Matrix3 = std::array<float, 9>;

/// Numbers of the color appearance model that do not depend on the primaries.
struct AppearanceModel {
    float luminance_level; ///< F_L / 100
    float exponent;        ///< of the achromatic response in the lightness J
    float root;            ///< its reciprocal
    float white, unwhite;  ///< the achromatic response of white before its normalization, and the reciprocal
};

constexpr float CONE_POWER = 0.42f;
constexpr float CONE_OFFSET = 0.2713f * 100.0f;

/// The color appearance model for RGB of some primaries, whose white is achromatic.
struct AppearanceMatrices {
    Matrix3 to_cones, from_cones; ///< RGB and adapted cone responses
    Matrix3 to_aab, from_aab;     ///< compressed cone responses; achromatic response and two opponent colors
};

/// The tone curve for a peak luminance.
struct ToneCurve {
    float gain, shift;   ///< m_2 and s_2
    float inverse_limit; ///< largest relative luminance that has an inverse
    float forward_limit; ///< largest relative luminance of interest
    float mid_luminance; ///< c_t
};

/// Factors of the compression of chroma, and of the gamut, for a peak luminance.
struct CompressionFactors {
    float max_j;                                   ///< J of the peak luminance
    float compression, saturation, saturation_min; ///< of the chroma
    float chroma_scale;
    float mid_j, focus_gain, lower_root; ///< of the gamut
};

/// A value at a hue of a table, and the difference from it to the next.
struct HueStep {
    float value, difference;
};

/// A whole degree of hue: the largest M of AP1 at max_j, and where hues from here to the next degree lie in
/// the table of the gamut: up to `first` in interval `degree`, up to `second` in the next one, else in the
/// one after it.
struct HueDegree {
    HueStep reach;
    float first, second;
};

/// The boundary of the limiting gamut between two hues of its table.
struct GamutInterval {
    HueStep hue, cusp_j, cusp_m, upper_root;
};

/// Entries of the table of the gamut: the one below 0, about one for each degree, and two from 360 degrees
/// on.
constexpr std::size_t HUE_ENTRIES = 363;

/// Distances in which to search for the interval of a hue, where the tables are not as HueDegree needs them.
struct HueSearch {
    int from = 0, to = 1;
    bool is_needed = false;
};

/// What an ACES 2.0 function needs. Parts that it does not need are empty.
struct Aces2 {
    AppearanceModel model;
    AppearanceMatrices scene;   ///< of ACES2065-1
    AppearanceMatrices display; ///< of the limiting primaries
    ToneCurve tone;
    CompressionFactors factors;
    std::vector<HueDegree> degrees;   ///< 0 to 360
    std::vector<GamutInterval> gamut; ///< interval i is from entry i to entry i + 1
    HueSearch search;
};

} // namespace pixel
