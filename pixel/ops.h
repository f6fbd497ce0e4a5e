#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <optional>
#include <variant>
#include <vector>

/// Color operations as plain data. Parameters are doubles, entries of LUTs 32-bit floats; channels are in the
/// order red, green, blue, alpha.
namespace pixel {

/// Whether an operation is applied or undone.
enum class Direction { Forward, Inverse };

/// Entries of a LUT; copies of a chain share them. Programs copy them into another layout.
using Table = std::shared_ptr<const std::vector<float>>;

/// out = m * in + offset; `m` is row-major, row 0 makes red.
struct Matrix {
    std::array<double, 16> m;
    std::array<double, 4> offset;
};

/// Maps [min_in, max_in] to [min_out, max_out] on red, green and blue, then clamps to the output bounds. With
/// only one pair of bounds it is a clamp on that side, and that pair must be equal.
struct Range {
    std::optional<double> min_in, max_in, min_out, max_out;
};

/// How a CDL clamps.
enum class CdlStyle {
    Clamped,   ///< ASC v1.2: clamped to [0, 1] before the power and at the end
    Unclamped, ///< no clamp; the power does not change negative values
};

/// Slope, offset, power, then saturation with the Rec. 709 luma weights.
struct Cdl {
    std::array<double, 3> slope, offset, power;
    double saturation;
    CdlStyle style;
    Direction direction;
};

/// What power curves do with negative values.
enum class Negatives {
    Clamp,       ///< negative values become 0
    Mirror,      ///< the curve rotated by 180 degrees about the origin
    PassThrough, ///< negative values are unchanged
    Linear,      ///< the linear toe continues below 0 (LinearToeCurve only)
};

/// out = in ^ value for all four channels. Styles: Clamp, Mirror, PassThrough.
struct Exponent {
    std::array<double, 4> value;
    Negatives negatives;
    Direction direction;
};

/// Power curve with a linear toe: ((in + offset) / (1 + offset)) ^ gamma above the break at offset / (gamma -
/// 1), a line through the origin below it. sRGB has gamma 2.4 and offset 0.055. Styles: Linear, Mirror.
struct LinearToeCurve {
    std::array<double, 4> gamma, offset;
    Negatives negatives;
    Direction direction;
};

/// out = log(in) to `base`; inputs below the smallest normal float are raised to it. Base 2 is "lg2".
struct Log {
    double base;
    Direction direction;
};

/// out = log_slope * log(lin_slope * in + lin_offset) + log_offset, per color channel. With `lin_break`, a
/// straight line below it: of slope `linear_slope`, or where that is absent of the curve's slope at the
/// break.
struct LogAffine {
    double base;
    std::array<double, 3> log_slope, log_offset, lin_slope, lin_offset;
    std::optional<std::array<double, 3>> lin_break, linear_slope;
    Direction direction;
};

/// Inputs of the entries of a 1D LUT.
enum class InputDomain {
    Unit, ///< entries evenly spaced over [0, 1]; inputs outside take the end values
    Half, ///< 65536 entries, one for each bit pattern of a 16-bit float
};

/// How LUTs of the unit domain interpolate, including the rounding: where entries of opposite signs cancel,
/// the rounding of the steps is visible. For other LUTs there is only one way.
enum class TableArithmetic {
    /// Products and sums rounded one by one. 1D: from the entry above; trilinear: from the lower corner,
    /// adding parts of the differences; tetrahedral: the sum of the weighted entries.
    Stepwise,
    /// 1D: from the entry below, product and sum rounded once; trilinear: both ends weighted; tetrahedral:
    /// each product and the sum so far rounded once.
    Fused,
};

/// 1D LUT, linearly interpolated. `values` has `length` entries for one shared curve (`channels` 1), or
/// red's, then green's, then blue's (`channels` 3).
struct Lut1D {
    InputDomain domain;
    std::size_t length;
    std::size_t channels;
    Table values;
    Direction direction;
    TableArithmetic arithmetic = TableArithmetic::Stepwise; ///< of forward LUTs of the unit domain
    /// The middle channel keeps its relative position between the other two, which keeps the hue.
    bool restores_hue = false;
};

/// Order of the entries of a 3D LUT.
enum class CubeOrder { RedFastest, BlueFastest };
/// Interpolation of a 3D LUT.
enum class CubeInterpolation { Trilinear, Tetrahedral };

/// 3D LUT of edge^3 RGB triples over [0, 1]. The inverse is that of tetrahedral interpolation.
struct Lut3D {
    std::size_t edge;
    CubeOrder order;
    CubeInterpolation interpolation;
    Table rgb;
    TableArithmetic arithmetic = TableArithmetic::Stepwise;
    Direction direction = Direction::Forward;
};

/// The fixed functions; comments list their parameters.
enum class FixedStyle {
    AcesRedModifier03,
    AcesRedModifier10,
    AcesGlow03,
    AcesGlow10,
    AcesDarkToDim10,
    AcesGamutCompression13,  ///< limits and thresholds of cyan, magenta and yellow, power
    Rec2100Surround,         ///< gamma
    Rec2100SurroundMirrored, ///< gamma; by the magnitude of the luminance
    RgbToHsv,
    XyzToXyy,
    XyzToUvy,
    XyzToLuv,
    AcesOutput20,           ///< peak luminance in nit; x and y of the limiting red, green, blue and white
    AcesRgbToJmh20,         ///< x and y of red, green, blue and white
    AcesToneCompression20,  ///< peak luminance in nit
    AcesGamutCompression20, ///< those of AcesOutput20
    LinearToPq,             ///< SMPTE ST 2084; 1 is 100 nit
    LinearToGammaLog,  ///< mirror, break, power, slope, offset, base, log slope and offset, linear slope and
                       ///< offset
    LinearToDoubleLog, ///< base, two breaks, log slope and offset and linear slope and offset of the low and
                       ///< of the high logarithm, slope and offset of the line between
};

/// A named function of red, green and blue together.
struct FixedFunction {
    FixedStyle style;
    std::vector<double> parameters;
    Direction direction;
};

/// The space in which a grading works.
enum class GradingStyle { Log, Linear, Video };

/// A point of a curve; all slopes 0: estimated.
struct ControlPoint {
    float x, y, slope;
};

/// Quadratic B-splines: the curve of each channel, then the master curve; the reverse in the inverse
/// direction. If all slopes of a curve are 0 they are estimated. The linear style works on a logarithm,
/// unless `bypass_lin_to_log`.
struct RgbCurve {
    GradingStyle style;
    bool bypass_lin_to_log;
    std::array<std::vector<ControlPoint>, 4> curve; ///< red, green, blue, master
    Direction direction;
};

/// The curves of a hue curve grading, in the order of HueCurve.
enum class HueCurveKind {
    HueHue,              ///< hue over hue
    HueSaturation,       ///< gain of the saturation over the hue
    HueLuminance,        ///< gain of the luma over the hue
    LuminanceSaturation, ///< gain of the saturation over the luma
    SaturationSaturation,
    LuminanceLuminance,
    SaturationLuminance, ///< gain of the luma over the saturation
    HueShift,            ///< added to the hue, over the hue
};

/// Curves of hue, saturation and luma. All slopes 0: estimated. The hue goes from 0 to 1; in the linear style
/// the luma is a logarithm.
struct HueCurve {
    GradingStyle style;
    bool converts_to_hsy; ///< false: red, green and blue are hue, saturation and luma
    std::array<std::vector<ControlPoint>, 8> curve;
    Direction direction;
};

/// The space in which ExposureContrast works.
enum class ExposureStyle { Linear, Video, Logarithmic };

/// Exposure in stops, contrast and gamma about a pivot.
struct ExposureContrast {
    ExposureStyle style;
    double exposure, contrast, gamma, pivot;
    double log_exposure_step, log_mid_gray; ///< of the logarithmic style
    Direction direction;
};

/// Values for red, green and blue, and a master value for all of them.
using Rgbm = std::array<double, 4>;

/// Log: brightness, contrast, gamma. Linear: offset, exposure, contrast. Video: lift, gain, offset, gamma.
/// All of them: saturation, then the clamps.
struct GradingPrimary {
    GradingStyle style;
    Rgbm brightness, contrast, gamma, offset, exposure, lift, gain;
    double saturation, pivot, pivot_black, pivot_white, clamp_black, clamp_white;
    /// The behavior of OpenColorIO 2.1: outside the log style, exponent 1 in one channel disables the
    /// exponents of all channels, and saturation alone has no effect.
    bool one_stops_all;
    Direction direction;
};

/// A part of the tonal range. `width` holds the pivot of shadows and highlights.
struct ToneZone {
    Rgbm value;
    double start, width;
};

/// Adjusts five parts of the tonal range, and contrast.
struct GradingTone {
    GradingStyle style;
    ToneZone blacks, shadows, midtones, highlights, whites;
    double s_contrast;
    Direction direction;
};

using Op = std::variant<Matrix, Range, Cdl, Exponent, LinearToeCurve, Log, LogAffine, Lut1D, Lut3D,
                        FixedFunction, RgbCurve, HueCurve, ExposureContrast, GradingPrimary, GradingTone>;
/// Applied from first to last.
using OpChain = std::vector<Op>;

} // namespace pixel
