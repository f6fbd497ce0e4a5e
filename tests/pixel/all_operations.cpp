#include "all_operations.h"

#include <cmath>
#include <memory>
#include <random>

#include "samples.h"

namespace pixel_test {

namespace {

using namespace pixel;

Table random_entries(std::size_t count) {
    std::mt19937 generator(17);
    std::uniform_real_distribution<float> uniform(-1.0f, 2.0f);
    std::vector<float> values(count);
    for (float& v : values) {
        v = uniform(generator);
    }
    return std::make_shared<const std::vector<float>>(std::move(values));
}

Table power_entries(std::size_t count) {
    std::vector<float> values;
    for (const float x : ramp(count, 0.0f, 1.0f)) {
        values.push_back(std::pow(x, 2.4f));
    }
    return std::make_shared<const std::vector<float>>(std::move(values));
}

/// Gradings and fixed functions but those whose results jump where roundings decide, or that take the
/// reciprocal of denormals, or add a small part to red.
void add_gradings(Direction direction, std::vector<Op>& ops) {
    for (const auto style : {FixedStyle::AcesGlow03, FixedStyle::AcesGlow10, FixedStyle::AcesDarkToDim10,
                             FixedStyle::RgbToHsv, FixedStyle::LinearToPq}) {
        ops.push_back(FixedFunction{style, {}, direction});
    }
    ops.push_back(FixedFunction{FixedStyle::Rec2100Surround, {0.78}, direction});
    const std::vector<double> rec709{0.64, 0.33, 0.30, 0.60, 0.15, 0.06, 0.3127, 0.3290};
    std::vector<double> limits{100};
    limits.insert(limits.end(), rec709.begin(), rec709.end());
    ops.push_back(FixedFunction{FixedStyle::AcesOutput20, limits, direction});
    ops.push_back(FixedFunction{FixedStyle::AcesRgbToJmh20, rec709, direction});
    ops.push_back(FixedFunction{FixedStyle::AcesToneCompression20, {1000}, direction});
    ops.push_back(FixedFunction{FixedStyle::AcesGamutCompression20, limits, direction});
    const std::vector<ControlPoint> straight{{0, 0, 0}, {1, 1, 0}};
    const std::vector<ControlPoint> bent{{-1, -1.5f, 0}, {0.18f, 0.2f, 0}, {0.7f, 0.9f, 0}, {2, 2.5f, 0}};
    for (const auto style : {GradingStyle::Log, GradingStyle::Linear}) {
        ops.push_back(RgbCurve{style, false, {bent, straight, straight, bent}, direction});
    }
    const std::vector<ControlPoint> level{{0, 1, 0}, {1, 1, 0}}, gains{{0.1f, 1.2f, 0}, {0.6f, 0.9f, 0}};
    for (const auto style : {GradingStyle::Log, GradingStyle::Video}) {
        ops.push_back(HueCurve{
            style,
            false,
            {straight, gains, gains, gains, straight, {{0, 0, 0}, {0.4f, 0.5f, 0}, {1, 1, 0}}, level, level},
            direction});
    }
    for (const auto style : {ExposureStyle::Linear, ExposureStyle::Video, ExposureStyle::Logarithmic}) {
        ops.push_back(ExposureContrast{style, 0.5, 1.2, 0.9, 0.18, 0.088, 0.435, direction});
    }
    const Rgbm some{1.1, 0.9, 1.2, 1.05}, little{0.01, -0.02, 0, 0.01};
    for (const auto style : {GradingStyle::Log, GradingStyle::Linear, GradingStyle::Video}) {
        ops.push_back(GradingPrimary{style, little, some, some, little, little, little, some, 1.2, 0.1, 0, 1,
                                     -1e300, 1e300, false, direction});
        ops.push_back(GradingTone{style,
                                  {some, 0.4, 0.4},
                                  {some, 0.5, 0},
                                  {some, 0.4, 0.6},
                                  {some, 0.3, 1},
                                  {some, 0.4, 0.5},
                                  1.2,
                                  direction});
    }
    ops.push_back(
        Lut1D{InputDomain::Unit, 1000, 1, power_entries(1000), direction, TableArithmetic::Stepwise, true});
}

} // namespace

std::vector<Op> all_operations() {
    std::vector<Op> ops{
        Matrix{{1.2, -0.3, 0.17, 0.25, 0.01, 0.9, 0.12, -0.5, -0.5, 0.33, 1.1, 0.75, 0, 0, 0, 1},
               {0.1, 0, 0, 0}},
        Matrix{{1.2, 0, 0, 0, 0, 0.9, 0, 0, 0, 0, 1.1, 0, 0, 0, 0, 1}, {0.1, 0, 0.7, 0}},
        Range{0.1, 0.9, -0.5, 2.0},
        Range{0.1, std::nullopt, 0.1, std::nullopt},
        Lut3D{9, CubeOrder::RedFastest, CubeInterpolation::Trilinear, random_entries(3 * 729)},
        Lut3D{9, CubeOrder::BlueFastest, CubeInterpolation::Tetrahedral, random_entries(3 * 729)},
        Lut1D{InputDomain::Unit, 100, 3, random_entries(300), Direction::Forward},
        Lut1D{InputDomain::Unit, 100, 3, random_entries(300), Direction::Forward, TableArithmetic::Fused},
        Lut3D{9, CubeOrder::RedFastest, CubeInterpolation::Trilinear, random_entries(3 * 729),
              TableArithmetic::Fused},
        Lut3D{9, CubeOrder::BlueFastest, CubeInterpolation::Tetrahedral, random_entries(3 * 729),
              TableArithmetic::Fused},
        Lut1D{InputDomain::Half, 65536, 1, random_entries(65536), Direction::Forward},
        Lut1D{InputDomain::Unit, 1000, 1, power_entries(1000), Direction::Inverse},
        Lut1D{InputDomain::Unit, 100, 3, random_entries(300), Direction::Inverse},
        Lut1D{InputDomain::Half, 65536, 1, power_entries(65536), Direction::Inverse},
    };
    ops.push_back(FixedFunction{FixedStyle::AcesGamutCompression13,
                                {1.147, 1.264, 1.312, 0.815, 0.803, 0.880, 1.2},
                                Direction::Forward});
    for (const Direction direction : {Direction::Forward, Direction::Inverse}) {
        add_gradings(direction, ops);
        for (const auto style : {Negatives::Clamp, Negatives::Mirror, Negatives::PassThrough}) {
            ops.push_back(Exponent{{2.2, 0.45, 7.5, 1}, style, direction});
        }
        for (const auto style : {Negatives::Linear, Negatives::Mirror}) {
            ops.push_back(LinearToeCurve{{2.4, 3, 1, 1}, {0.055, 0.16, 0.1, 0}, style, direction});
        }
        for (const auto style : {CdlStyle::Clamped, CdlStyle::Unclamped}) {
            // Saturation 1 keeps the channels apart: nothing is subtracted that could magnify a rounding.
            ops.push_back(Cdl{{1.1, 0.9, 1}, {0.01, 0.02, 0}, {1.2, 0.8, 1}, 1, style, direction});
        }
        ops.push_back(Log{10, direction});
        // Offset 0 where a logarithm or power is rounded: nothing cancels.
        ops.push_back(
            LogAffine{2, {1, 2, 3}, {0, 0, 0}, {1, 2, 3}, {0, 0, 0}, {{0.1, 0.1, 0.1}}, {}, direction});
    }
    return ops;
}

} // namespace pixel_test
