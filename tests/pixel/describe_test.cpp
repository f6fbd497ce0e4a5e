#include <memory>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "pixel/chain.h"

using namespace pixel;
using testing::ElementsAre;

namespace {

const Matrix DOUBLE{{2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 1}, {0.5, 0.5, 0.5, 0}};

TEST(Describe, ListsTheChainBeforeAndAfterSimplification) {
    const Program program({DOUBLE, DOUBLE, Range{0.0, 1.0, 0.0, 1.0}, Log{10, Direction::Inverse}});
    const Description words = program.describe();
    EXPECT_THAT(words.given, ElementsAre("matrix 2 0 0 0 / 0 2 0 0 / 0 0 2 0 / 0 0 0 1, offset 0.5 0.5 0.5 0",
                                         "matrix 2 0 0 0 / 0 2 0 0 / 0 0 2 0 / 0 0 0 1, offset 0.5 0.5 0.5 0",
                                         "clamp to [0, 1]", "log to base 10, inverse"));
    EXPECT_THAT(words.simplified,
                ElementsAre("matrix 4 0 0 0 / 0 4 0 0 / 0 0 4 0 / 0 0 0 1, offset 1.5 1.5 1.5 0",
                            "clamp to [0, 1]", "log to base 10, inverse"));
}

TEST(Describe, NamesEveryKindOfOperation) {
    const auto values = std::make_shared<const std::vector<float>>(std::vector<float>{0.0f, 1.0f});
    const auto cube = std::make_shared<const std::vector<float>>(24, 0.5f);
    const Program program({
        Range{0.0, std::nullopt, 0.0, std::nullopt},
        Range{0.0, 1.0, 0.25, 0.75},
        Cdl{{1, 1.5, 1}, {0, 0, 0.1}, {1, 1, 2}, 0.9, CdlStyle::Clamped, Direction::Inverse},
        Exponent{{2.2, 2.2, 2.2, 1}, Negatives::Mirror, Direction::Forward},
        LinearToeCurve{{2.4, 2.4, 2.4, 1}, {0.055, 0.055, 0.055, 0}, Negatives::Linear, Direction::Forward},
        LogAffine{2,
                  {1, 1, 1},
                  {0, 0, 0},
                  {1, 1, 1},
                  {0, 0, 0},
                  {{0.1, 0.1, 0.1}},
                  {{2, 2, 2}},
                  Direction::Forward},
        Lut1D{InputDomain::Unit, 2, 1, values, Direction::Inverse},
        Lut3D{2, CubeOrder::RedFastest, CubeInterpolation::Tetrahedral, cube},
    });
    EXPECT_THAT(
        program.describe().given,
        ElementsAre("clamp to [0, inf]", "range [0, 1] to [0.25, 0.75]",
                    "CDL, clamped, slope 1 1.5 1, offset 0 0 0.1, power 1 1 2, saturation 0.9, inverse",
                    "exponent 2.2 2.2 2.2 1, negatives mirrored",
                    "power curve with a linear toe, gamma 2.4 2.4 2.4 1, offset 0.055 0.055 0.055 0, "
                    "negatives linear",
                    "log to base 2, log slope 1 1 1, log offset 0 0 0, linear slope 1 1 1, linear offset 0 0 "
                    "0, a line below 0.1 0.1 0.1 of slope 2 2 2",
                    "1D LUT of 2 entries, one curve, inverse", "3D LUT of edge 2, tetrahedral"));
}

TEST(Describe, NamesGradingsAndFixedFunctions) {
    const Rgbm one{1, 1, 1, 1}, zero{0, 0, 0, 0};
    GradingPrimary primary{GradingStyle::Log,
                           zero,
                           {1.5, 1, 1, 1},
                           one,
                           zero,
                           zero,
                           zero,
                           one,
                           1.25,
                           0,
                           0,
                           1,
                           -1e300,
                           1e300,
                           false,
                           Direction::Forward};
    GradingTone tone{GradingStyle::Video,
                     {one, 0.4, 0.4},
                     {{1, 1, 1, 1.5}, 0.6, 0},
                     {one, 0.4, 0.7},
                     {one, 0.2, 1},
                     {one, 0.5, 0.5},
                     1.5,
                     Direction::Inverse};
    const std::vector<ControlPoint> straight{{0, 0, 0}, {1, 1, 0}},
        bent{{0, 0, 0}, {0.5f, 0.75f, 0}, {1, 1, 0}}, level{{0, 1, 0}, {1, 1, 0}};
    const Program program({
        FixedFunction{FixedStyle::AcesGlow10, {}, Direction::Forward},
        FixedFunction{FixedStyle::Rec2100Surround, {0.78}, Direction::Inverse},
        FixedFunction{FixedStyle::AcesToneCompression20, {1000}, Direction::Inverse},
        RgbCurve{GradingStyle::Linear, true, {bent, straight, straight, bent}, Direction::Forward},
        HueCurve{GradingStyle::Linear,
                 false,
                 {straight, level, level, level, bent, straight, level, bent},
                 Direction::Inverse},
        ExposureContrast{ExposureStyle::Linear, 1, 1.5, 1, 0.18, 0.088, 0.435, Direction::Forward},
        primary,
        tone,
    });
    EXPECT_THAT(program.describe().given,
                ElementsAre("ACES 1.0 glow", "Rec. 2100 surround, parameters 0.78, inverse",
                            "ACES 2.0 tone scale and chroma compression, parameters 1000, inverse",
                            "RGB curves, linear style, without the step to a logarithm, red of 3 control "
                            "points, master of 3 control points",
                            "hue curves, linear style, without the conversion to hue, saturation and luma, "
                            "sat-sat of 3 control points, hue-fx of 3 control points, inverse",
                            "exposure and contrast, linear style, exposure 1, contrast 1.5, gamma 1, pivot "
                            "0.18",
                            "primary grading, log style, contrast 1.5 1 1 1, saturation 1.25",
                            "tone grading, video style, shadows 1 1 1 1.5, s-contrast 1.5, inverse"));
}

TEST(Describe, WritesMinusZeroAsZero) {
    const Program program({Matrix{{1, 0, 0, 0, 0, 1, 0, 0, -0.0, 0, 2, 0, 0, 0, 0, 1}, {0, 0, 0, -0.0}}});
    EXPECT_THAT(program.describe().given,
                ElementsAre("matrix 1 0 0 0 / 0 1 0 0 / 0 0 2 0 / 0 0 0 1, offset 0 0 0 0"));
}

TEST(Trace, GivesThePixelAfterEachStep) {
    const Program program(
        {DOUBLE, Range{0.0, 1.0, 0.0, 1.0}, Exponent{{2, 2, 2, 1}, Negatives::Mirror, Direction::Forward}});
    const auto steps = program.trace({0.125f, 0.0f, 1.0f, 0.5f});
    ASSERT_EQ(steps.size(), 3u);
    EXPECT_THAT(steps[0].value, ElementsAre(0.75f, 0.5f, 2.5f, 0.5f));
    EXPECT_THAT(steps[1].value, ElementsAre(0.75f, 0.5f, 1.0f, 0.5f));
    EXPECT_THAT(steps[2].value, ElementsAre(0.5625f, 0.25f, 1.0f, 0.5f));
    EXPECT_EQ(steps[1].operation, "clamp to [0, 1]");
}

TEST(Trace, IdentityHasNoSteps) {
    EXPECT_TRUE(Program(OpChain{}).trace({1, 2, 3, 4}).empty());
    EXPECT_TRUE(Program(OpChain{}).is_identity());
    EXPECT_FALSE(Program({DOUBLE}).is_identity());
}

} // namespace
