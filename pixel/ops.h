#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <optional>
#include <variant>
#include <vector>

/// Color operations as plain data. Every parameter is a double, or a 32-bit float where it is a table entry;
/// channels are in the order red, green, blue, alpha.
namespace pixel {

enum class Direction { Forward, Inverse };

/// Table entries as they are given; copies of a chain share them. Programs lay them out anew for their
/// kernels.
using Table = std::shared_ptr<const std::vector<float>>;

/// out = m * in + offset; `m` is row-major, row 0 makes red.
struct Matrix {
    std::array<double, 16> m;
    std::array<double, 4> offset;
};

/// Maps [min_in, max_in] to [min_out, max_out] on red, green and blue, then clamps to the output bounds. With
/// one pair of bounds only it is a clamp on that side, and that side's in and out values must be equal.
struct Range {
    std::optional<double> min_in, max_in, min_out, max_out;
};

enum class CdlStyle {
    Clamped,   ///< ASC v1.2: clamped to [0, 1] before the power and at the end
    Unclamped, ///< no clamp; the power leaves negative values alone
};

/// Slope, offset, power, then saturation with the Rec. 709 luma weights.
struct Cdl {
    std::array<double, 3> slope, offset, power;
    double saturation;
    CdlStyle style;
    Direction direction;
};

enum class Negatives {
    Clamp,       ///< negative values become 0
    Mirror,      ///< the curve turned by 180 degrees about the origin
    PassThrough, ///< negative values stay as they are
    Linear,      ///< the linear toe goes on below 0 (LinearToeCurve only)
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

enum class InputDomain {
    Unit, ///< entries evenly spaced over [0, 1]; inputs outside take the end values
    Half, ///< 65536 entries, one for each bit pattern of a 16-bit float
};

/// How tables of the unit domain interpolate, down to the rounding: where entries of opposite signs cancel,
/// the last digits of the steps come to the front. Other tables have one way only.
enum class TableArithmetic {
    /// Products and sums rounded one by one. 1D: from the entry above; trilinear: from the lower corner,
    /// adding parts of the differences; tetrahedral: the sum of the weighted entries.
    Stepwise,
    /// 1D: from the entry below, product and sum rounded once; trilinear: both ends weighted; tetrahedral:
    /// each product and the sum so far rounded once.
    Fused,
};

/// One-dimensional table, linearly interpolated. `values` holds `length` entries for one shared curve
/// (`channels` 1), or red's, then green's, then blue's (`channels` 3).
struct Lut1D {
    InputDomain domain;
    std::size_t length;
    std::size_t channels;
    Table values;
    Direction direction;
    TableArithmetic arithmetic = TableArithmetic::Stepwise; ///< of forward tables of the unit domain
    /// The channel in the middle keeps its share of the way between the other two.
    bool restores_hue = false;
};

enum class CubeOrder { RedFastest, BlueFastest };
enum class CubeInterpolation { Trilinear, Tetrahedral };

/// Three-dimensional table of edge^3 RGB triples over [0, 1]. The inverse is that of tetrahedral
/// interpolation.
struct Lut3D {
    std::size_t edge;
    CubeOrder order;
    CubeInterpolation interpolation;
    Table rgb;
    TableArithmetic arithmetic = TableArithmetic::Stepwise;
    Direction direction = Direction::Forward;
};

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
    LinearToPq,        ///< SMPTE ST 2084; 1 is 100 nit
    LinearToGammaLog,  ///< mirror, break, power, slope, offset, base, log slope and offset, linear slope and
                       ///< offset
    LinearToDoubleLog, ///< base, two breaks, log slope and offset and linear slope and offset of the low and
                       ///< of the high logarithm, slope and offset of the line between
};

/// A function of red, green and blue together that has a name instead of a formula in the parameters.
struct FixedFunction {
    FixedStyle style;
    std::vector<double> parameters;
    Direction direction;
};

enum class GradingStyle { Log, Linear, Video };

struct ControlPoint {
    float x, y, slope;
};

/// Quadratic B-splines: the curve of each channel, then the master curve, in the inverse direction the other
/// way around. Where all slopes of a curve are 0 they are estimated. The linear style works on a logarithm,
/// unless `bypass_lin_to_log`.
struct RgbCurve {
    GradingStyle style;
    bool bypass_lin_to_log;
    std::array<std::vector<ControlPoint>, 4> curve; ///< red, green, blue, master
    Direction direction;
};

enum class ExposureStyle { Linear, Video, Logarithmic };

/// Exposure in stops, contrast and gamma about a pivot.
struct ExposureContrast {
    ExposureStyle style;
    double exposure, contrast, gamma, pivot;
    double log_exposure_step, log_mid_gray; ///< of the logarithmic style
    Direction direction;
};

/// Values of red, green and blue, and of a master that all of them share.
using Rgbm = std::array<double, 4>;

/// Log: brightness, contrast, gamma. Linear: offset, exposure, contrast. Video: lift, gain, offset, gamma.
/// All of them: saturation, then the clamps.
struct GradingPrimary {
    GradingStyle style;
    Rgbm brightness, contrast, gamma, offset, exposure, lift, gain;
    double saturation, pivot, pivot_black, pivot_white, clamp_black, clamp_white;
    /// As OpenColorIO 2.1 does it: outside the log style a channel with exponent 1 leaves all channels
    /// without one, and saturation alone does nothing.
    bool one_stops_all;
    Direction direction;
};

/// A part of the tonal range. `width` holds the pivot of shadows and highlights.
struct ToneZone {
    Rgbm value;
    double start, width;
};

struct GradingTone {
    GradingStyle style;
    ToneZone blacks, shadows, midtones, highlights, whites;
    double s_contrast;
    Direction direction;
};

using Op = std::variant<Matrix, Range, Cdl, Exponent, LinearToeCurve, Log, LogAffine, Lut1D, Lut3D,
                        FixedFunction, RgbCurve, ExposureContrast, GradingPrimary, GradingTone>;
using OpChain = std::vector<Op>;

} // namespace pixel
