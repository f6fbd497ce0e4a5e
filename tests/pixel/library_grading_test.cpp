#include <random>
#include <vector>

#include "library_agreement.h"

using namespace pixel_test;

namespace {

constexpr library::TransformDirection DIRECTIONS[] = {library::TRANSFORM_DIR_FORWARD,
                                                      library::TRANSFORM_DIR_INVERSE};
constexpr library::GradingStyle STYLES[] = {library::GRADING_LOG, library::GRADING_LIN,
                                            library::GRADING_VIDEO};

using Points = std::vector<library::GradingControlPoint>;

library::GradingBSplineCurveRcPtr curve(const Points& points, const std::vector<float>& slopes = {}) {
    const auto out = library::GradingBSplineCurve::Create(points.size());
    for (std::size_t i = 0; i < points.size(); ++i) {
        out->getControlPoint(i) = points[i];
        if (!slopes.empty())
            out->setSlope(i, slopes[i]);
    }
    return out;
}

using Curves = std::vector<library::GradingBSplineCurveRcPtr>;

void expect_agreement(const Curves& curves, bool bypass = false) {
    for (const auto style : STYLES)
        for (const auto direction : DIRECTIONS) {
            const auto transform = library::GradingRGBCurveTransform::Create(style);
            transform->setValue(library::GradingRGBCurve::Create(curves[0], curves[1], curves[2], curves[3]));
            transform->setBypassLinToLog(bypass);
            transform->setDirection(direction);
            EXPECT_TRUE(agrees(transform)) << *transform;
        }
}

TEST(LibraryGradingAgreement, RgbCurvesWithEstimatedSlopes) {
    const auto straight = curve({{0, 0}, {0.5f, 0.5f}, {1, 1}});
    const auto bent = curve({{-5.2f, -4.5f}, {-2, -1.5f}, {0.18f, 0.2f}, {0.7f, 0.9f}, {4.6f, 4.1f}});
    const auto steep = curve({{0, -0.1f}, {0.25f, 0.15f}, {0.5f, 0.75f}, {1, 1.1f}});
    const auto line = curve({{0, 0.1f}, {1, 0.8f}});
    expect_agreement({bent, straight, steep, straight});
    expect_agreement({straight, bent, straight, steep});
    expect_agreement({steep, line, bent, bent}, true);
    expect_agreement({line, steep, straight, line});
}

TEST(LibraryGradingAgreement, RgbCurvesWithGivenSlopes) {
    const auto straight = curve({{0, 0}, {0.5f, 0.5f}, {1, 1}});
    const auto tone = curve({{-2.54f, -1.7f}, {-1.16f, -1.05f}, {0.22f, 0.23f}, {1.34f, 1.26f}, {3, 1.68f}},
                            {0.1f, 0.79f, 0.97f, 0.74f, 0.04f});
    const auto flat_ends =
        curve({{-5.26f, -4}, {-0.75f, 0.68f}, {1.06f, 2.87f}, {4.67f, 4}}, {0, 1.55f, 0.88f, 0});
    const auto backward = curve({{0, 0}, {0.5f, 0.1f}, {1, 1}}, {2, 0.5f, 3});
    expect_agreement({straight, straight, straight, tone});
    expect_agreement({flat_ends, straight, backward, straight});
    expect_agreement({tone, flat_ends, straight, backward});
}

TEST(LibraryGradingAgreement, RgbCurvesOfManyPoints) {
    std::mt19937 generator(4);
    std::uniform_real_distribution<float> step(0.02f, 0.12f);
    Points points;
    for (library::GradingControlPoint p(-0.4f, -0.3f); points.size() < 20; p.m_x += step(generator)) {
        points.push_back(p);
        p.m_y += step(generator);
    }
    const auto straight = curve({{0, 0}, {1, 1}});
    expect_agreement({straight, straight, straight, curve(points)});
}

TEST(LibraryGradingAgreement, ExposureAndContrast) {
    struct Values {
        double exposure, contrast, gamma, pivot;
    };
    for (const auto& v : {Values{1.3, 1.2, 0.9, 0.18}, Values{-0.7, 1, 1, 0.18}, Values{0, 0.8, 1.1, 0.4},
                          Values{0, 2, 0.5, 0.18}, Values{2, 0, 1, 0}})
        for (const auto style : {library::EXPOSURE_CONTRAST_LINEAR, library::EXPOSURE_CONTRAST_VIDEO,
                                 library::EXPOSURE_CONTRAST_LOGARITHMIC})
            for (const auto direction : DIRECTIONS) {
                const auto transform = library::ExposureContrastTransform::Create();
                transform->setStyle(style);
                transform->setExposure(v.exposure);
                transform->setContrast(v.contrast);
                transform->setGamma(v.gamma);
                transform->setPivot(v.pivot);
                transform->setLogExposureStep(0.1);
                transform->setDirection(direction);
                EXPECT_TRUE(agrees(transform)) << *transform;
            }
}

library::GradingPrimary primary(library::GradingStyle style) {
    library::GradingPrimary v(style);
    v.m_brightness = {10, -20, 30, 5};
    v.m_contrast = {1.1, 0.9, 1.2, 1.05};
    v.m_gamma = {1.1, 0.9, 1.3, 1.2};
    v.m_offset = {0.01, -0.02, 0.03, 0.01};
    v.m_exposure = {0.3, -0.4, 0.1, 0.2};
    v.m_lift = {0.01, 0.02, -0.03, 0.01};
    v.m_gain = {1.1, 0.9, 1.2, 1.05};
    return v;
}

void expect_agreement(library::GradingStyle style, const library::GradingPrimary& values) {
    for (const auto direction : DIRECTIONS) {
        const auto transform = library::GradingPrimaryTransform::Create(style);
        transform->setValue(values);
        transform->setDirection(direction);
        EXPECT_TRUE(agrees(transform)) << *transform;
    }
}

TEST(LibraryGradingAgreement, PrimaryOfEveryStyle) {
    for (const auto style : STYLES) {
        library::GradingPrimary values = primary(style);
        expect_agreement(style, values);
        values.m_saturation = 1.3;
        values.m_pivot = 0.1;
        values.m_pivotBlack = 0.05;
        values.m_pivotWhite = 0.9;
        expect_agreement(style, values);
        values.m_clampBlack = 0;
        values.m_clampWhite = 1.5;
        expect_agreement(style, values);
        values.m_saturation = 0;
        expect_agreement(style, values);
    }
}

TEST(LibraryGradingAgreement, PrimaryWithNeutralChannels) {
    for (const auto style : STYLES) {
        library::GradingPrimary values(style);
        values.m_saturation = 1.4;
        expect_agreement(style, values);
        values.m_contrast = {1, 1.2, 1, 1};
        values.m_gamma = {1.3, 1, 1, 1};
        expect_agreement(style, values);
        values.m_saturation = 1;
        expect_agreement(style, values);
        values.m_contrast = values.m_gamma = {1, 1, 1, 1};
        values.m_clampWhite = 1;
        expect_agreement(style, values);
    }
}

void expect_agreement(library::GradingStyle style, const library::GradingTone& values) {
    for (const auto direction : DIRECTIONS) {
        const auto transform = library::GradingToneTransform::Create(style);
        transform->setValue(values);
        transform->setDirection(direction);
        EXPECT_TRUE(agrees(transform)) << *transform;
    }
}

void set_values(library::GradingRGBMSW& zone, double red, double green, double blue, double master) {
    zone.m_red = red;
    zone.m_green = green;
    zone.m_blue = blue;
    zone.m_master = master;
}

using Zone = library::GradingRGBMSW library::GradingTone::*;
constexpr Zone ZONES[] = {&library::GradingTone::m_blacks, &library::GradingTone::m_shadows,
                          &library::GradingTone::m_midtones, &library::GradingTone::m_highlights,
                          &library::GradingTone::m_whites};

TEST(LibraryGradingAgreement, ToneOfEveryZoneAlone) {
    for (const auto style : STYLES)
        for (const Zone zone : ZONES) {
            library::GradingTone values(style);
            set_values(values.*zone, 1.35, 0.6, 1, 1.2);
            expect_agreement(style, values);
            set_values(values.*zone, 0.75, 1, 1.7, 0.5);
            expect_agreement(style, values);
        }
}

TEST(LibraryGradingAgreement, ToneContrast) {
    for (const auto style : STYLES)
        for (const double contrast : {0.05, 0.6, 1.4, 1.85, 1.98}) {
            library::GradingTone values(style);
            values.m_scontrast = contrast;
            expect_agreement(style, values);
        }
}

TEST(LibraryGradingAgreement, ToneOfAllZonesTogether) {
    for (const auto style : STYLES) {
        library::GradingTone values(style);
        for (const Zone zone : ZONES)
            set_values(values.*zone, 1.1, 0.9, 1.05, zone == ZONES[1] || zone == ZONES[3] ? 1.15 : 0.95);
        values.m_scontrast = 1.2;
        expect_agreement(style, values);
        for (const Zone zone : ZONES)
            set_values(values.*zone, 0.8, 1.2, 1, zone == ZONES[1] || zone == ZONES[3] ? 0.9 : 1.1);
        expect_agreement(style, values);
    }
}

} // namespace
