#include "colorio/color_io_converter.h"

#include <algorithm>
#include <cmath>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/colorio/color_formulas.h"
#include "tests/colorio/host_shader_fixture.h"
#include "tests/colorio/library_differences.h"

namespace {

using library_differences::expected;
using testing::Each;
using testing::HasSubstr;
using testing::Not;

/// How a color space's values are laid along an axis of the table: [0, 1] to value and back.
struct Axis {
    double (*value_at)(double position);
    double (*position_of)(double value);
};
const Axis UNIFORM = {[](double position) { return -0.125 + 1.25 * position; },
                      [](double value) { return (value + 0.125) / 1.25; }};
const Axis LG2 = {[](double position) { return std::exp2(-15 + 21 * position); },
                  [](double value) { return value > 0 ? (std::log2(value) + 15) / 21 : 0.0; }};

/// The curve of a LUT with 32 entries: straight lines between the nodes.
double by_lattice(const Axis& axis, double (*curve)(double), double value) {
    const double place = std::clamp(axis.position_of(value), 0.0, 1.0) * (EDGE - 1);
    const double low = std::min(std::floor(place), EDGE - 2.0);
    const double first = curve(axis.value_at(low / (EDGE - 1)));
    const double second = curve(axis.value_at((low + 1) / (EDGE - 1)));
    return first + (second - first) * (place - low);
}

double srgb_to_cineon(double value) {
    return formula::linear_to_cineon(formula::srgb_to_linear(value));
}
double cineon_to_srgb(double value) {
    return formula::linear_to_srgb(formula::cineon_to_linear(value));
}

struct BuiltInPair {
    const char* name;
    const char* source;
    const char* destination;
    Axis axis;
    double (*curve)(double);
};
const BuiltInPair BUILT_IN_PAIRS[] = {
    {"SrgbToLinear", "sRGB", "linear", UNIFORM, formula::srgb_to_linear},
    {"SrgbToCineon", "sRGB", "Cineon", UNIFORM, srgb_to_cineon},
    {"CineonToLinear", "Cineon", "linear", UNIFORM, formula::cineon_to_linear},
    {"CineonToSrgb", "Cineon", "sRGB", UNIFORM, cineon_to_srgb},
    {"LinearToSrgb", "linear", "sRGB", LG2, formula::linear_to_srgb},
    {"LinearToCineon", "linear", "Cineon", LG2, formula::linear_to_cineon},
};

/// Pixels over and around the range that a color space's values have.
std::vector<ShaderEvaluator::Pixel> probe_pixels(const Axis& axis) {
    std::vector<ShaderEvaluator::Pixel> pixels;
    for (int i = -5; i <= 105; ++i)
        pixels.push_back({axis.value_at(i / 100.0), axis.value_at((i * 37 % 100) / 100.0),
                          axis.value_at((100 - i) / 100.0), i / 100.0});
    pixels.push_back({0, -0.05, -7, 1});
    pixels.push_back({1, 0.5, 0.18, 0.5});
    return pixels;
}

class ShaderOfBuiltInPair : public HostShader, public testing::WithParamInterface<BuiltInPair> {};

TEST_P(ShaderOfBuiltInPair, HasATableOfTheConvertedLatticeWithRedFastest) {
    const auto& [name, source, destination, axis, curve] = GetParam();
    ASSERT_TRUE(converter->configure(source, destination));
    generate(CORE);
    std::vector<double> expected(EDGE);
    for (unsigned int i = 0; i < EDGE; ++i)
        expected[i] = curve(axis.value_at(i / (EDGE - 1.0)));
    for (unsigned int entry = 0; entry < FLOAT_COUNT / 3; ++entry) {
        const unsigned int position[3] = {entry % EDGE, entry / EDGE % EDGE, entry / EDGE / EDGE};
        for (unsigned int channel = 0; channel < 3; ++channel) {
            const double value = expected[position[channel]];
            ASSERT_NEAR(lut[entry * 3 + channel], value, 1e-5 * std::max(1.0, std::abs(value)))
                << "entry " << entry << ", channel " << channel;
        }
    }
}

TEST_P(ShaderOfBuiltInPair, ShowsTheConversionWithinTheErrorOfTheLattice) {
    const auto& [name, source, destination, axis, curve] = GetParam();
    ASSERT_TRUE(converter->configure(source, destination));
    for (GlslVersion version : {LEGACY, CORE}) {
        generate(version);
        ShaderEvaluator shader = evaluator();
        for (const ShaderEvaluator::Pixel& pixel : probe_pixels(axis)) {
            GMathVec4<float> converted(static_cast<float>(pixel[0]), static_cast<float>(pixel[1]),
                                       static_cast<float>(pixel[2]), static_cast<float>(pixel[3]));
            ASSERT_TRUE(converter->convert_pixel(converted));
            const ShaderEvaluator::Pixel shown = shader.run(pixel);
            for (unsigned int i = 0; i < 3; ++i) {
                const double on_lattice = by_lattice(axis, curve, pixel[i]);
                const double tolerance = 2e-5 * std::max(1.0, std::abs(on_lattice));
                EXPECT_NEAR(shown[i], on_lattice, tolerance) << pixel[i];
                EXPECT_NEAR(shown[i], converted[i], std::abs(on_lattice - curve(pixel[i])) + 2 * tolerance)
                    << pixel[i];
            }
            EXPECT_EQ(shown[3], pixel[3]) << "alpha is not converted";
        }
    }
}

INSTANTIATE_TEST_SUITE_P(HostShader, ShaderOfBuiltInPair, testing::ValuesIn(BUILT_IN_PAIRS),
                         [](const auto& pair) { return pair.param.name; });

TEST_F(HostShader, OfAViewShowsTheView) {
    ASSERT_TRUE(converter->configure_for_display("linear", "Tavelion.sRGB"));
    generate(CORE);
    ShaderEvaluator shader = evaluator();
    for (double value : {0.001, 0.18, 0.5, 1.0})
        EXPECT_NEAR(shader.run({value, 0, 0, 1})[0], by_lattice(LG2, formula::linear_to_srgb, value), 2e-5)
            << value;
}

TEST_F(HostShader, OfOneSpaceByTwoNamesReturnsThePixel) {
    ASSERT_TRUE(converter->configure("Tavelion|sRGB", "sRGB"));
    generate(CORE);
    EXPECT_THAT(lut, Each(0.0f));
    expect_same_as_pixels({{0.25, -3, 17, 0.5}, {0, 0, 0, 0}, {1e6, -1e6, 1, 2}}, 0);
}

TEST_F(HostShader, OfAMatrixNeedsNoTable) {
    use_config(CONFIG_WITHOUT_FAMILIES);
    ASSERT_TRUE(converter->configure("lin", "film"));
    for (GlslVersion version : {LEGACY, CORE}) {
        generate(version);
        EXPECT_THAT(lut, Each(0.0f));
        EXPECT_THAT(code, Not(HasSubstr("texture")));
        expect_same_as_pixels({{1, 0.5, 0.25, 1}, {-2, 100, 0, 0.5}}, 1e-6);
    }
}

TEST_F(HostShader, OfACdlNeedsNoTable) {
    use_cdls({cdl_record("warm", {{1.25, 1, 0.75}, {0.0625, 0, -0.125}, {1.5, 1, 0.5}, 0.75}),
              cdl_record("straight", {{1.25, 1, 0.75}, {0.0625, 0, -0.125}, {1, 1, 1}, 0.75})});
    const std::vector<ShaderEvaluator::Pixel> pixels = {
        {0.2, 0.3, 0.4, 1}, {0.5, 0.5, 0.5, 0.25}, {2, 0.75, 1.5, 0}, {0, 0.1, 0.05, 1}, {-0.5, 0.25, -1, 1}};
    const double tolerance = std::stod(expected("error of a correction's shader"));
    for (auto [source, destination] : {std::pair{"No CDL", "warm"},
                                       {"warm", "No CDL"},
                                       {"No CDL", "straight"},
                                       {"straight", "No CDL"},
                                       {"warm", "straight"}}) {
        SCOPED_TRACE(std::string(source) + " to " + destination);
        ASSERT_TRUE(converter->configure_CDL(source, destination));
        for (GlslVersion version : {LEGACY, CORE}) {
            generate(version);
            EXPECT_THAT(lut, Each(0.0f)) << "an unused table is all zeros";
            EXPECT_THAT(code, Not(HasSubstr("texture")));
            expect_same_as_pixels(pixels, tolerance);
        }
    }
}

} // namespace
