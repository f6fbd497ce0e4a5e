#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <variant>
#include <vector>

#include "pixel/block.h"
#include "pixel/inverse_cube.h"
#include "pixel/ops.h"
#include "pixel/pixel_function.h"

/// Operations compiled for the kernels: constants rounded to 32-bit floats, LUTs padded, searches indexed.
/// Each rounding step is part of the contract: the results equal those of the reference renderer bit for bit
/// wherever its elementary functions do.
namespace pixel {

struct Aces2;

/// out = ((m0 r + m1 g) + m2 b) + m3 a, then + offset; every product and sum rounded.
struct MatrixStage {
    float m[4][4];
    float column[4][4]; ///< m transposed
    float offset[4];
    bool has_offset;
};

/// Some of the four channels: as flags, and as 1 and 0 for kernels whose lanes are channels.
struct ChannelSet {
    bool flag[4];
    float lane[4];

    bool operator[](std::size_t c) const { return flag[c]; }
    void set(std::size_t c, bool on) {
        flag[c] = on;
        lane[c] = on ? 1.0f : 0.0f;
    }
};

/// out = in * scale + offset on the active channels.
struct DiagonalStage {
    float scale[4];
    float offset[4];
    ChannelSet active;
};

/// A diagonal matrix that is computed in the stage before or after it. Adding minus zero changes no value,
/// not even the sign of a zero.
struct Scaling {
    float scale[4] = {1, 1, 1, 1};
    float offset[4] = {-0.0f, -0.0f, -0.0f, -0.0f};
    bool used = false;
};

/// t = in * scale + offset, raised to `low`, then lowered to `high`. NaN goes to `low`, or without it to
/// `high`.
struct RangeStage {
    float scale, offset;
    bool has_low, has_high;
    float low, high;
};

enum class PowerShape { Clamp, Mirror, PassThrough };

struct PowerStage {
    float exponent[4];
    PowerShape shape;
    ChannelSet active;
    Scaling before;
};

/// Forward: in > knee ? (in * scale + offset) ^ exponent : in * slope.
/// Inverse: in > knee ? in ^ exponent * scale - offset : in * slope.
struct ToeStage {
    float scale[4], offset[4], exponent[4], slope[4], knee[4];
    bool forward, mirror;
};

/// Inverse stages have the reciprocals of slope, power and saturation. Alpha is unchanged; its entries let
/// kernels whose lanes are channels treat it like the others.
struct CdlStage {
    float slope[4], offset[4], power[4];
    float saturation;
    bool clamp, forward;
    bool raises; ///< some power is not 1
};

/// log2(max(in * lin_slope + lin_offset, FLT_MIN)) * log_slope + log_offset, or the line below the break; not
/// for alpha, whose entries are 0.
struct LogStage {
    float lin_slope[4], lin_offset[4], log_slope[4], log_offset[4], lin_break[4], line_slope[4],
        line_offset[4];
    bool affine; ///< false: log_slope only
    bool has_line;
};

/// (exp2((in - log_offset) * log_slope) - lin_offset) * lin_slope, or the line below the break; not for
/// alpha, whose entries are 0.
struct ExpStage {
    float log_offset[4], log_slope[4], lin_offset[4], lin_slope[4], log_break[4], line_offset[4],
        line_slope[4];
    bool affine; ///< false: exp2(in * log_slope) only
    bool has_line;
};

/// Entries of one curve after one copy of the first: entry i is `values[i + 1]`, so that the pair that ends
/// at entry 0 can be loaded too.
struct PaddedCurve {
    std::vector<float> values;
};

struct TableStage {
    float last; ///< index of the last entry
    TableArithmetic arithmetic;
    Scaling before;
    std::array<PaddedCurve, 3> curve;
    std::array<int, 3> curve_of; ///< which curve each channel uses
};

/// Entry i is `values[i]`: pairs are named by their first entry.
struct HalfTableStage {
    std::array<PaddedCurve, 3> curve;
    std::array<int, 3> curve_of;
};

/// Data of the inverse of a LUT for values near one knot (an entry).
struct Knot {
    float below, at, above; ///< the entry before, the entry, the entry after
    float index;            ///< position of the entry; NaN sends the value to the exact search
};

/// The inverse of one monotonic curve. `sorted` holds the entries `first` to `first + sorted.size() - 1`,
/// ascending (negated when the curve falls). Value v belongs to the knot of bucket (bits(v + bias) - base) >>
/// shift.
struct InverseCurve {
    std::vector<float> sorted;
    std::vector<Knot> knots;
    float sign;
    float bias;
    std::uint32_t base;
    int shift;
    std::size_t first;
    bool crowded; ///< some buckets hold several knots
};

struct InverseTableStage {
    float reciprocal; ///< 1 / index of the last entry
    Scaling after;
    std::array<InverseCurve, 3> curve;
    std::array<int, 3> curve_of;
};

/// The inverse of a curve over the 16-bit floats: one curve for the entries of positive and one for those of
/// negative numbers, positions in which are the bits of the magnitude. Values from `middle` on belong to the
/// positive numbers when `rising`, values below it otherwise.
struct InverseHalfCurve {
    InverseCurve positive, negative;
    float middle;
    bool rising;
};

struct InverseHalfStage {
    std::array<InverseHalfCurve, 3> curve;
    std::array<int, 3> curve_of;
};

/// A LUT after which the middle channel is moved to keep the hue.
struct HueTableStage {
    std::variant<TableStage, HalfTableStage, InverseTableStage, InverseHalfStage> table;
};

/// RGB triples padded to four floats, blue fastest.
struct CubeStage {
    std::size_t edge;
    CubeInterpolation interpolation;
    TableArithmetic arithmetic;
    std::vector<float> rgbx;
};

struct InverseCubeStage {
    std::shared_ptr<const InverseCube> cube;
};

/// An operation whose constants are documented in its file.
struct FunctionStage {
    void (*run)(const FunctionStage& stage, Block& block);
    std::array<float, 8> k;
    std::array<double, 16> wide = {};
    std::shared_ptr<const Aces2> aces2 = nullptr; ///< of the ACES 2.0 functions
};

/// The pieces of a spline, `(a * t + b) * t + c` with t = x - knot, in the order of their knots; the lines
/// outside are the first and the last piece, and the first has the knot of the second.
template <class T>
struct Spline {
    struct Piece {
        T knot, a, b, c;
    };
    std::vector<Piece> pieces; ///< none: the identity
};

/// A spline prepared for a kernel in one direction: piece i is used from start[i] on; start[0] is not used.
template <class T>
struct SplineTable {
    static constexpr std::size_t FEW = sizeof(T) == sizeof(float) ? 32 : 8; ///< two registers, or one

    std::vector<T> start;
    std::vector<typename Spline<T>::Piece> pieces;
    /// Knots, a, b, c and starts of up to FEW pieces, for processors that look up numbers in a register.
    /// Missing starts are above every value.
    std::array<std::array<T, FEW>, 5> few;
    bool is_identity() const { return pieces.empty(); }
};

/// Curves of red, green, blue and master.
struct CurveStage {
    std::vector<SplineTable<float>> curve; ///< four; large, so kept apart from stages of other kinds
    bool forward;
};

/// The curves of a HueCurve; those that its direction inverts are prepared for that.
struct HueCurveStage {
    std::vector<SplineTable<float>> curve;
    GradingStyle style;
    bool converts_to_hsy;
    bool forward;
};

/// A spline, the inverse of one, or one below a bound and the other above it.
struct WideStep {
    SplineTable<double> evaluated, solved;
    double bound;
    bool solved_below;
};

/// Steps of each channel in double precision.
struct SequenceStage {
    std::array<std::vector<WideStep>, 3> steps;
    bool logarithmic; ///< between a step to a logarithm and one back
    bool capped;      ///< at the largest 16-bit float; NaN stays
};

/// (in * gain) ^ exponent * scale; negative values and NaN count as 0.
struct ExposureStage {
    double gain, exponent, scale;
};

/// A line, a signed power about `power_from` in units of `power_width`, another line; saturation and clamps
/// behind them, or for the inverse in front.
struct PrimaryStage {
    struct Line {
        double scale, offset;
    };
    Line before[3], after[3];
    double power[3], power_from, power_width;
    double saturation, low, high;
    bool forward, has_power, has_saturation;
};

using Stage = std::variant<MatrixStage, DiagonalStage, RangeStage, PowerStage, ToeStage, CdlStage, LogStage,
                           ExpStage, TableStage, HalfTableStage, InverseTableStage, InverseHalfStage,
                           HueTableStage, CubeStage, InverseCubeStage, FunctionStage, CurveStage,
                           HueCurveStage, SequenceStage, ExposureStage, PrimaryStage>;

/// Runs one stage on a block.
void run(const Stage& stage, Block& block);

/// A stage's function for single pixels; `stage` points to the stage. The results have the same bits as in an
/// image.
using PixelKernel = void (*)(const void* stage, float* rgba);

/// The kernel of a stage for the instruction set in use at the time of the call. A stage without a kernel for
/// single pixels runs on a block of one pixel.
PixelFunction pixel_step(const Stage& stage);

} // namespace pixel
