#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "colorio/ocio/v2/pixel_bridge.h"
#include "rounding_agreement.h"

using namespace pixel_test;

namespace {

constexpr std::size_t PIXELS = 4000;

/// Curves with random points; with `slopes` these are given too.
library::GradingHueCurveRcPtr random_curves(library::GradingStyle style, bool slopes,
                                            std::mt19937& generator) {
    const auto uniform = [&](float from, float to) {
        return std::uniform_real_distribution<float>(from, to)(generator);
    };
    const library::GradingHueCurveRcPtr curves = library::GradingHueCurve::Create(style);
    for (int type = 0; type < library::HUE_NUM_CURVES; ++type) {
        const auto curve = curves->getCurve(static_cast<library::HueCurveType>(type));
        const bool rises = type == library::HUE_HUE || type == library::SAT_SAT || type == library::LUM_LUM;
        const float width =
            curve->getControlPoint(curve->getNumControlPoints() - 1).m_x - curve->getControlPoint(0).m_x;
        for (std::size_t k = 0; k < curve->getNumControlPoints(); ++k) {
            library::GradingControlPoint& point = curve->getControlPoint(k);
            const float most = type == library::HUE_FX ? 0.05f : rises ? 0.05f * width : 0.3f;
            point.m_y += uniform(-most, most);
            if (slopes) {
                curve->setSlope(k, rises ? uniform(0.6f, 1.4f) : uniform(-0.4f, 0.4f));
            }
        }
    }
    return curves;
}

/// Ordinary colors, and for the linear style bright ones.
std::vector<Pixel> colors() {
    std::mt19937 generator(61);
    std::uniform_real_distribution<float> unit(-0.1f, 1.2f), stops(-10, 3);
    std::vector<Pixel> pixels;
    for (std::size_t i = 0; i < PIXELS; ++i) {
        pixels.push_back({unit(generator), unit(generator), unit(generator), 0.5f});
        pixels.push_back(
            {std::exp2(stops(generator)), std::exp2(stops(generator)), std::exp2(stops(generator)), 1});
    }
    return pixels;
}

/// The linear style divides by small numbers for saturated bright colors, which magnifies roundings of
/// logarithms.
void expect_agreement(library::GradingStyle style, bool slopes, library::HSYTransformStyle hsy) {
    std::mt19937 generator(67);
    for (int i = 0; i < 6; ++i) {
        const auto transform = library::GradingHueCurveTransform::Create(style);
        transform->setValue(random_curves(style, slopes, generator));
        transform->setRGBToHSY(hsy);
        for (const auto direction : {library::TRANSFORM_DIR_FORWARD, library::TRANSFORM_DIR_INVERSE}) {
            transform->setDirection(direction);
            const RoundingDifference found = rounding_difference(processor_of(transform), colors());
            EXPECT_EQ(found.not_numbers, 0u) << *transform;
            EXPECT_LE(found.beyond, style == library::GRADING_LIN ? found.pixels / 200 : 0)
                << found.words << *transform;
            EXPECT_LE(found.largest, 100) << found.words << *transform;
        }
    }
}

TEST(LibraryHueCurveAgreement, LogStyle) {
    expect_agreement(library::GRADING_LOG, false, library::HSY_TRANSFORM_1);
    expect_agreement(library::GRADING_LOG, true, library::HSY_TRANSFORM_1);
    expect_agreement(library::GRADING_LOG, false, library::HSY_TRANSFORM_NONE);
}

TEST(LibraryHueCurveAgreement, VideoStyle) {
    expect_agreement(library::GRADING_VIDEO, false, library::HSY_TRANSFORM_1);
    expect_agreement(library::GRADING_VIDEO, true, library::HSY_TRANSFORM_1);
}

TEST(LibraryHueCurveAgreement, LinearStyle) {
    expect_agreement(library::GRADING_LIN, false, library::HSY_TRANSFORM_1);
    expect_agreement(library::GRADING_LIN, true, library::HSY_TRANSFORM_1);
    expect_agreement(library::GRADING_LIN, false, library::HSY_TRANSFORM_NONE);
}

TEST(LibraryHueCurveAgreement, CurvesThatAreOnlyDrawnAreLeftToTheLibrary) {
    std::mt19937 generator(67);
    const auto curves = random_curves(library::GRADING_LOG, false, generator);
    curves->setDrawCurveOnly(true);
    const auto transform = library::GradingHueCurveTransform::Create(library::GRADING_LOG);
    transform->setValue(curves);
    std::string why_not;
    EXPECT_FALSE(ocio::translate(processor_of(transform), &why_not).has_value());
    EXPECT_EQ(why_not, "a hue curve that is only drawn is not supported by the SIMD code");
}

} // namespace
