#include "benchmarks/pixel/conversions.h"

#include <cmath>
#include <cstring>
#include <stdexcept>
#include <string>
#include <utility>

#include "colorio/ocio/v2/pixel_bridge.h"

namespace pixel_bench {

namespace {

/// A built-in space as the library reads it from its file: 4101 samples over [-0.125, 1.125].
library::TransformRcPtr builtin_space(double (*decode)(double), library::TransformDirection direction) {
    constexpr unsigned long LENGTH = 4101;
    double m[16], offset[4];
    const double low[4] = {-0.125, -0.125, -0.125, 0}, high[4] = {1.125, 1.125, 1.125, 1};
    const double zero[4] = {0, 0, 0, 0}, one[4] = {1, 1, 1, 1};
    library::MatrixTransform::Fit(m, offset, low, high, zero, one);
    const library::MatrixTransformRcPtr fit = library::MatrixTransform::Create();
    fit->setMatrix(m);
    fit->setOffset(offset);
    const auto table = library::Lut1DTransform::Create(LENGTH, false);
    for (unsigned long i = 0; i < LENGTH; ++i) {
        const auto v = static_cast<float>(decode(static_cast<double>(i) * 1.25 / 4100 - 0.125));
        table->setValue(i, v, v, v);
    }
    const library::GroupTransformRcPtr group = library::GroupTransform::Create();
    group->appendTransform(fit);
    group->appendTransform(table);
    group->setDirection(direction);
    return group;
}

double srgb(double x) {
    return x >= 0.04045 ? std::pow((x + 0.055) / 1.055, 2.4) : x / 12.92;
}

double cineon(double x) {
    const double black = std::pow(10.0, (95 - 685) / 300.0);
    return (std::pow(10.0, (1023 * x - 685) / 300) - black) / (1 - black);
}

library::TransformRcPtr grade(library::CDLStyle style) {
    const double slope[3] = {1.1, 0.9, 1.05}, offset[3] = {0.01, -0.02, 0.03}, power[3] = {1.2, 0.8, 1.1};
    const library::CDLTransformRcPtr cdl = library::CDLTransform::Create();
    cdl->setSlope(slope);
    cdl->setOffset(offset);
    cdl->setPower(power);
    cdl->setSat(1.2);
    cdl->setStyle(style);
    return cdl;
}

library::TransformRcPtr cube(library::Interpolation interpolation) {
    constexpr unsigned long EDGE = 33;
    const auto transform = library::Lut3DTransform::Create(EDGE);
    const auto at = [](unsigned long i) { return static_cast<float>(i) / static_cast<float>(EDGE - 1); };
    for (unsigned long r = 0; r < EDGE; ++r)
        for (unsigned long g = 0; g < EDGE; ++g)
            for (unsigned long b = 0; b < EDGE; ++b)
                transform->setValue(r, g, b, 0.9f * at(r) * at(r) + 0.05f * at(g), std::sqrt(at(g)),
                                    0.8f * at(b) + 0.2f * at(r));
    transform->setInterpolation(interpolation);
    return transform;
}

library::TransformRcPtr matrix() {
    const double m[16] = {0.6, 0.3, 0.1, 0, 0.2, 0.7, 0.1, 0, 0.05, 0.15, 0.8, 0, 0, 0, 0, 1};
    const library::MatrixTransformRcPtr transform = library::MatrixTransform::Create();
    transform->setMatrix(m);
    return transform;
}

library::TransformRcPtr exponent() {
    const double value[4] = {2.2, 2.2, 2.2, 1};
    const library::ExponentTransformRcPtr transform = library::ExponentTransform::Create();
    transform->setValue(value);
    return transform;
}

/// The ACEScct curve (Academy S-2016-001), from linear.
library::TransformRcPtr camera_log() {
    const double linear_break[3] = {0.0078125, 0.0078125, 0.0078125},
                 slope[3] = {1 / 17.52, 1 / 17.52, 1 / 17.52};
    const double offset[3] = {9.72 / 17.52, 9.72 / 17.52, 9.72 / 17.52};
    const auto transform = library::LogCameraTransform::Create(linear_break);
    transform->setLogSideSlopeValue(slope);
    transform->setLogSideOffsetValue(offset);
    return transform;
}

/// A LUT with an entry for each 16-bit float: the sRGB curve.
library::TransformRcPtr half_table() {
    const auto table = library::Lut1DTransform::Create(65536, true);
    for (unsigned long i = 0; i < 65536; ++i) {
        float r, g, b;
        table->getValue(i, r, g, b); // a new table holds the numbers themselves
        const auto v = std::isfinite(r) ? static_cast<float>(srgb(static_cast<double>(r))) : r;
        table->setValue(i, v, v, v);
    }
    return table;
}

/// ACEScg through an ACES 1.x output transform to the code values of a display.
library::TransformRcPtr aces_view(const char* output, const char* display) {
    const library::GroupTransformRcPtr group = library::GroupTransform::Create();
    for (const char* style : {"ACEScg_to_ACES2065-1", output, display}) {
        const library::BuiltinTransformRcPtr part = library::BuiltinTransform::Create();
        part->setStyle(style);
        group->appendTransform(part);
    }
    return group;
}

library::TransformRcPtr primary_grading(library::GradingStyle style) {
    library::GradingPrimary values(style);
    values.m_brightness = {10, -20, 30, 5};
    values.m_contrast = {1.1, 0.9, 1.2, 1.05};
    values.m_gamma = {1.1, 0.9, 1.3, 1.2};
    values.m_exposure = {0.3, -0.4, 0.1, 0.2};
    values.m_lift = {0.01, 0.02, -0.03, 0.01};
    values.m_saturation = 1.2;
    const auto transform = library::GradingPrimaryTransform::Create(style);
    transform->setValue(values);
    return transform;
}

library::TransformRcPtr tone_grading(library::GradingStyle style) {
    library::GradingTone values(style);
    for (library::GradingRGBMSW* zone :
         {&values.m_blacks, &values.m_shadows, &values.m_midtones, &values.m_highlights, &values.m_whites}) {
        zone->m_red = 1.1;
        zone->m_blue = 0.9;
        zone->m_master = 1.05;
    }
    values.m_scontrast = 1.2;
    const auto transform = library::GradingToneTransform::Create(style);
    transform->setValue(values);
    return transform;
}

/// An S-shaped master curve; red has a curve too.
library::TransformRcPtr rgb_curves(library::GradingStyle style) {
    const auto curve = [](float low, float high) {
        const auto out = library::GradingBSplineCurve::Create(4);
        out->getControlPoint(0) = {0, 0};
        out->getControlPoint(1) = {0.3f, low};
        out->getControlPoint(2) = {0.7f, high};
        out->getControlPoint(3) = {1, 1};
        return out;
    };
    const auto straight = curve(0.3f, 0.7f);
    const auto transform = library::GradingRGBCurveTransform::Create(style);
    transform->setValue(
        library::GradingRGBCurve::Create(curve(0.33f, 0.68f), straight, straight, curve(0.22f, 0.8f)));
    return transform;
}

library::TransformRcPtr exposure_contrast() {
    const auto transform = library::ExposureContrastTransform::Create();
    transform->setStyle(library::EXPOSURE_CONTRAST_LINEAR);
    transform->setExposure(0.5);
    transform->setContrast(1.2);
    return transform;
}

Conversion make(const char* name, const library::ConstTransformRcPtr& transform, unsigned int version = 2) {
    const library::ConfigRcPtr config = library::Config::CreateRaw()->createEditableCopy();
    config->setMajorVersion(version);
    config->setProcessorCacheFlags(
        library::PROCESSOR_CACHE_OFF); // as the module does; else set-up is a lookup
    for (const char* space : {SOURCE, DESTINATION}) {
        const library::ColorSpaceRcPtr color_space = library::ColorSpace::Create();
        color_space->setName(space);
        if (space == SOURCE)
            color_space->setTransform(transform, library::COLORSPACE_DIR_TO_REFERENCE);
        config->addColorSpace(color_space);
    }
    return {name, config, config->getProcessor(SOURCE, DESTINATION)};
}

bool is_built_in(const char* style) {
    const auto registry = library::BuiltinTransformRegistry::Get();
    for (std::size_t i = 0; i < registry->getNumBuiltins(); ++i)
        if (std::strcmp(registry->getBuiltinStyle(i), style) == 0)
            return true;
    return false;
}

/// ACES 2.0 output transforms, where the library has them.
void add_aces2_views(std::vector<Conversion>& conversions) {
    const char* const sdr = "ACES-OUTPUT - ACES2065-1_to_CIE-XYZ-D65 - SDR-100nit-REC709_2.0";
    const char* const hdr = "ACES-OUTPUT - ACES2065-1_to_CIE-XYZ-D65 - HDR-1000nit-REC2020_2.0";
    if (!is_built_in(sdr) || !is_built_in(hdr))
        return;
    const auto add = [&](const char* name, const library::TransformRcPtr& transform,
                         library::TransformDirection to) {
        transform->setDirection(to);
        conversions.push_back(make(name, transform));
    };
    const char *const srgb_display = "DISPLAY - CIE-XYZ-D65_to_sRGB",
                      *const pq_display = "DISPLAY - CIE-XYZ-D65_to_REC.2100-PQ";
    add("aces2_sdr_view", aces_view(sdr, srgb_display), library::TRANSFORM_DIR_FORWARD);
    add("aces2_hdr_view", aces_view(hdr, pq_display), library::TRANSFORM_DIR_FORWARD);
    add("aces2_sdr_view_inverse", aces_view(sdr, srgb_display), library::TRANSFORM_DIR_INVERSE);
}

std::vector<Conversion> make_conversions() {
    constexpr auto FORWARD = library::TRANSFORM_DIR_FORWARD, INVERSE = library::TRANSFORM_DIR_INVERSE;
    std::vector<Conversion> all{
        make("srgb_to_linear", builtin_space(srgb, FORWARD)),
        make("linear_to_srgb", builtin_space(srgb, INVERSE)),
        make("linear_to_cineon", builtin_space(cineon, INVERSE)),
        make("half_table", half_table()),
        make("cdl_version_1", grade(library::CDL_NO_CLAMP), 1),
        make("cdl_unclamped", grade(library::CDL_NO_CLAMP)),
        make("cdl_clamped", grade(library::CDL_ASC)),
        make("cube_trilinear", cube(library::INTERP_LINEAR)),
        make("cube_tetrahedral", cube(library::INTERP_TETRAHEDRAL)),
        make("matrix", matrix()),
        make("exponent", exponent()),
        make("camera_log", camera_log()),
        make("aces_sdr_view", aces_view("ACES-OUTPUT - ACES2065-1_to_CIE-XYZ-D65 - SDR-VIDEO_1.0",
                                        "DISPLAY - CIE-XYZ-D65_to_sRGB")),
        make("aces_hdr_view",
             aces_view("ACES-OUTPUT - ACES2065-1_to_CIE-XYZ-D65 - HDR-VIDEO-1000nit-15nit-REC2020lim_1.1",
                       "DISPLAY - CIE-XYZ-D65_to_REC.2100-PQ")),
        make("primary_log", primary_grading(library::GRADING_LOG)),
        make("primary_linear", primary_grading(library::GRADING_LIN)),
        make("tone_log", tone_grading(library::GRADING_LOG)),
        make("tone_linear", tone_grading(library::GRADING_LIN)),
        make("rgb_curve_log", rgb_curves(library::GRADING_LOG)),
        make("rgb_curve_linear", rgb_curves(library::GRADING_LIN)),
        make("exposure_contrast", exposure_contrast()),
    };
    add_aces2_views(all);
    return all;
}

} // namespace

const std::vector<Conversion>& conversions() {
    static const std::vector<Conversion> all = make_conversions();
    return all;
}

library::ConstCPUProcessorRcPtr lossless(const library::ConstProcessorRcPtr& processor) {
    return processor->getOptimizedCPUProcessor(static_cast<library::OptimizationFlags>(
        library::OPTIMIZATION_LOSSLESS | library::OPTIMIZATION_NO_DYNAMIC_PROPERTIES));
}

library::ConstCPUProcessorRcPtr by_default(const library::ConstProcessorRcPtr& processor) {
    return processor->getDefaultCPUProcessor();
}

std::shared_ptr<const pixel::Program> program_of(const Conversion& conversion) {
    std::string why_not;
    auto chain = ocio::translate(conversion.processor, &why_not);
    if (!chain)
        throw std::runtime_error(std::string(conversion.name) + ": " + why_not);
    return std::make_shared<const pixel::Program>(std::move(*chain));
}

} // namespace pixel_bench
