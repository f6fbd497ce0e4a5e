#include <array>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <vector>

#include "every_target.h"
#include "samples.h"

using namespace pixel;
using namespace pixel_test;

namespace {

class Gradings : public EveryTarget {};
RUN_ON_EVERY_TARGET(Gradings);

using Points = std::vector<ControlPoint>;

RgbCurve master_curve(GradingStyle style, const Points& points, Direction direction) {
    const Points straight{{0, 0, 0}, {1, 1, 0}};
    return {style, false, {straight, straight, straight, points}, direction};
}

TEST_P(Gradings, CurvesPassThroughTheirControlPointsInBothDirections) {
    const Points points{{-0.5f, -0.25f, 0}, {0.25f, 0.125f, 0}, {0.5f, 0.75f, 0}, {1, 1.25f, 0}};
    for (const auto& [x, y, slope] : points) {
        EXPECT_NEAR(apply_gray(master_curve(GradingStyle::Log, points, Direction::Forward), x), y, 1e-6);
        EXPECT_NEAR(apply_gray(master_curve(GradingStyle::Log, points, Direction::Inverse), y), x, 1e-6);
    }
}

TEST_P(Gradings, CurvesGoOnAsLinesOutside) {
    const Single curve(master_curve(GradingStyle::Log, {{0, 0, 0.5f}, {1, 1, 2}}, Direction::Forward));
    EXPECT_NEAR(curve(-2), -1, 1e-6);
    EXPECT_NEAR(curve(3), 5, 1e-6);
    EXPECT_TRUE(std::isnan(curve(std::numeric_limits<float>::quiet_NaN())));
    EXPECT_EQ(curve(std::numeric_limits<float>::infinity()), std::numeric_limits<float>::infinity());
}

/// More pieces than fit the registers that short curves are looked up in.
TEST_P(Gradings, CurvesOfManyPoints) {
    Points points;
    for (int i = 0; i <= 40; ++i) {
        const float x = static_cast<float>(i) / 40;
        points.push_back({x, x * x, 2 * x + 0.001f});
    }
    const Single curve(master_curve(GradingStyle::Video, points, Direction::Forward));
    for (const float x : {0.0f, 0.2f, 0.525f, 0.975f, 1.0f}) {
        EXPECT_NEAR(curve(x), x * x, 1e-4) << x;
    }
}

/// Stops from mid gray: a point moves by what its control point says, in stops.
TEST_P(Gradings, CurvesOfTheLinearStyleWorkOnStops) {
    const Points brighter{{-7, -6, 1}, {7, 8, 1}};
    const Single curve(master_curve(GradingStyle::Linear, brighter, Direction::Forward));
    const double shift = 0.000157849851665374;
    EXPECT_NEAR(curve(0.18f), (0.18 - shift) * 2 + shift, 1e-6);
}

TEST(GradingParameters, ControlPointsAreInOrder) {
    const auto make = [](const Points& points) {
        return Program({master_curve(GradingStyle::Log, points, Direction::Forward)});
    };
    EXPECT_THROW(make({{0, 1, 0}}), std::invalid_argument);
    EXPECT_THROW(make({{1, 0, 0}, {0, 1, 0}}), std::invalid_argument);
}

TEST_P(Gradings, ExposureIsInStopsAndContrastAboutThePivot) {
    const auto make = [](double exposure, double contrast) {
        return ExposureContrast{ExposureStyle::Linear, exposure, contrast, 1, 0.18, 0.088, 0.435,
                                Direction::Forward};
    };
    EXPECT_EQ(apply_gray(make(2, 1), -0.25f), -1);
    EXPECT_NEAR(apply_gray(make(0, 1.5), 0.18f), 0.18, 1e-7);
    EXPECT_NEAR(apply_gray(make(0, 2), 0.36f), 0.72, 1e-6);
    EXPECT_EQ(apply_gray(make(0, 2), -1), 0);
}

GradingPrimary primary(GradingStyle style) {
    const Rgbm one{1, 1, 1, 1}, zero{0, 0, 0, 0};
    return {style, zero, one, one, zero,   zero,  zero,  one,
            1,     0,    0,   1,   -1e300, 1e300, false, Direction::Forward};
}

TEST_P(Gradings, PrimaryValuesDoWhatTheirNamesSay) {
    GradingPrimary stops = primary(GradingStyle::Linear);
    stops.exposure = {1, 0, 0, 1};
    EXPECT_EQ(apply_one(stops, {0.25f, 0.25f, 0.25f, 1}), (Pixel{1, 0.5f, 0.5f, 1}));
    GradingPrimary gray = primary(GradingStyle::Log);
    gray.saturation = 0;
    EXPECT_NEAR(apply_one(gray, {1, 0, 0, 1})[2], 0.2126, 1e-7);
    GradingPrimary gamma = primary(GradingStyle::Video);
    gamma.gamma = {1, 1, 1, 2};
    EXPECT_NEAR(apply_gray(gamma, 0.25f), 0.5, 1e-7);
    EXPECT_NEAR(apply_gray(gamma, -0.25f), -0.5, 1e-7);
}

/// The defect of OpenColorIO 2.1 that its results are matched with.
TEST_P(Gradings, OneNeutralChannelStopsTheOthersWhereTheFlagSaysSo) {
    GradingPrimary video = primary(GradingStyle::Video);
    video.gamma = {2, 1, 1, 1};
    EXPECT_NEAR(apply_one(video, {0.25f, 0.25f, 0.25f, 1})[0], 0.5, 1e-7);
    video.one_stops_all = true;
    EXPECT_EQ(apply_one(video, {0.25f, 0.25f, 0.25f, 1})[0], 0.25f);
}

GradingTone tone(GradingStyle style) {
    const Rgbm one{1, 1, 1, 1};
    return {style, {one, 0.4, 0.4},   {one, 0.5, 0}, {one, 0.4, 0.6}, {one, 0.3, 1}, {one, 0.4, 0.5},
            1,     Direction::Forward};
}

TEST_P(Gradings, ToneLeavesWhatLiesOutsideItsZoneAlone) {
    GradingTone midtones = tone(GradingStyle::Log);
    midtones.midtones.value[3] = 1.5;
    EXPECT_NEAR(apply_gray(midtones, 0), 0, 1e-6);
    EXPECT_NEAR(apply_gray(midtones, 1), 1, 1e-6);
    EXPECT_GT(apply_gray(midtones, 0.4f), 0.45f);
    GradingTone blacks = tone(GradingStyle::Log);
    blacks.blacks.value[3] = 0.5;
    EXPECT_NEAR(apply_gray(blacks, 0.75f), 0.75, 1e-6);
    EXPECT_LT(apply_gray(blacks, 0.1f), 0.09f);
}

TEST_P(Gradings, ToneIsUndoneByItsInverseAndCapped) {
    GradingTone values = tone(GradingStyle::Log);
    values.midtones.value = {1.2, 0.9, 1, 1.1};
    values.whites.value = {1.3, 0.8, 1, 0.9};
    values.s_contrast = 1.3;
    const Single forward(values);
    values.direction = Direction::Inverse;
    const Single inverse(values);
    for (const float v : ramp(101, -0.5f, 1.5f)) {
        const Pixel there = forward({v, v, v, 1});
        for (std::size_t c = 0; c < 3; ++c) {
            EXPECT_NEAR(inverse(there)[c], v, 1e-5) << v;
        }
    }
    EXPECT_EQ(forward(1e30f), 65504);
}

} // namespace
