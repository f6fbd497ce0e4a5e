#include "colorio/ocio/v2/pixel_bridge_grading.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

#include "colorio/ocio/v2/pixel_bridge_words.h"

namespace ocio {

namespace {

struct FixedFunctionName {
    library::FixedFunctionStyle theirs;
    pixel::FixedStyle ours;
};

constexpr FixedFunctionName FIXED_FUNCTIONS[] = {
    {library::FIXED_FUNCTION_ACES_RED_MOD_03, pixel::FixedStyle::AcesRedModifier03},
    {library::FIXED_FUNCTION_ACES_RED_MOD_10, pixel::FixedStyle::AcesRedModifier10},
    {library::FIXED_FUNCTION_ACES_GLOW_03, pixel::FixedStyle::AcesGlow03},
    {library::FIXED_FUNCTION_ACES_GLOW_10, pixel::FixedStyle::AcesGlow10},
    {library::FIXED_FUNCTION_ACES_DARK_TO_DIM_10, pixel::FixedStyle::AcesDarkToDim10},
    {library::FIXED_FUNCTION_ACES_GAMUT_COMP_13, pixel::FixedStyle::AcesGamutCompression13},
#if OCIO_VERSION_MINOR < 5
    {library::FIXED_FUNCTION_REC2100_SURROUND, pixel::FixedStyle::Rec2100Surround},
#else
    {library::FIXED_FUNCTION_REC2100_SURROUND, pixel::FixedStyle::Rec2100SurroundMirrored},
    {library::FIXED_FUNCTION_ACES_OUTPUT_TRANSFORM_20, pixel::FixedStyle::AcesOutput20},
    {library::FIXED_FUNCTION_ACES_RGB_TO_JMH_20, pixel::FixedStyle::AcesRgbToJmh20},
    {library::FIXED_FUNCTION_ACES_TONESCALE_COMPRESS_20, pixel::FixedStyle::AcesToneCompression20},
    {library::FIXED_FUNCTION_ACES_GAMUT_COMPRESS_20, pixel::FixedStyle::AcesGamutCompression20},
    {library::FIXED_FUNCTION_LIN_TO_PQ, pixel::FixedStyle::LinearToPq},
    {library::FIXED_FUNCTION_LIN_TO_GAMMA_LOG, pixel::FixedStyle::LinearToGammaLog},
    {library::FIXED_FUNCTION_LIN_TO_DOUBLE_LOG, pixel::FixedStyle::LinearToDoubleLog},
#endif
    {library::FIXED_FUNCTION_RGB_TO_HSV, pixel::FixedStyle::RgbToHsv},
    {library::FIXED_FUNCTION_XYZ_TO_xyY, pixel::FixedStyle::XyzToXyy},
    {library::FIXED_FUNCTION_XYZ_TO_uvY, pixel::FixedStyle::XyzToUvy},
    {library::FIXED_FUNCTION_XYZ_TO_LUV, pixel::FixedStyle::XyzToLuv},
};

void refuse_dynamic(bool is_dynamic) {
    if (is_dynamic)
        throw NotKnown{"a grading whose values change after it is made is not supported by the SIMD code"};
}

pixel::GradingStyle style_of(library::GradingStyle style) {
    return style == library::GRADING_LOG   ? pixel::GradingStyle::Log
           : style == library::GRADING_LIN ? pixel::GradingStyle::Linear
                                           : pixel::GradingStyle::Video;
}

pixel::Rgbm values_of(const library::GradingRGBM& v) {
    return {v.m_red, v.m_green, v.m_blue, v.m_master};
}

pixel::ToneZone zone_of(const library::GradingRGBMSW& v) {
    return {{v.m_red, v.m_green, v.m_blue, v.m_master}, v.m_start, v.m_width};
}

std::vector<pixel::ControlPoint> points_of(const library::GradingBSplineCurve& curve) {
    std::vector<pixel::ControlPoint> points;
    for (std::size_t k = 0; k < curve.getNumControlPoints(); ++k) {
        const library::GradingControlPoint& point = curve.getControlPoint(k);
        points.push_back({point.m_x, point.m_y, curve.getSlope(k)});
    }
    return points;
}

} // namespace

pixel::Op translate_op(const library::FixedFunctionTransform& t) {
    const auto* const known =
        std::find_if(std::begin(FIXED_FUNCTIONS), std::end(FIXED_FUNCTIONS),
                     [&](const FixedFunctionName& name) { return name.theirs == t.getStyle(); });
    if (known == std::end(FIXED_FUNCTIONS))
        throw NotKnown{std::string("FixedFunction ") + library::FixedFunctionStyleToString(t.getStyle()) +
                       " is not supported by the SIMD code"};
    pixel::FixedFunction op{known->ours, std::vector<double>(t.getNumParams()), direction_of(t)};
    if (!op.parameters.empty())
        t.getParams(op.parameters.data());
    return op;
}

pixel::Op translate_op(const library::ExposureContrastTransform& t) {
    refuse_dynamic(t.isExposureDynamic() || t.isContrastDynamic() || t.isGammaDynamic());
    const pixel::ExposureStyle style =
        t.getStyle() == library::EXPOSURE_CONTRAST_LINEAR  ? pixel::ExposureStyle::Linear
        : t.getStyle() == library::EXPOSURE_CONTRAST_VIDEO ? pixel::ExposureStyle::Video
                                                           : pixel::ExposureStyle::Logarithmic;
    return pixel::ExposureContrast{style,        t.getExposure(),        t.getContrast(),   t.getGamma(),
                                   t.getPivot(), t.getLogExposureStep(), t.getLogMidGray(), direction_of(t)};
}

pixel::Op translate_op(const library::GradingPrimaryTransform& t) {
    refuse_dynamic(t.isDynamic());
    const library::GradingPrimary& v = t.getValue();
    pixel::GradingPrimary op{};
    op.style = style_of(t.getStyle());
    op.brightness = values_of(v.m_brightness);
    op.contrast = values_of(v.m_contrast);
    op.gamma = values_of(v.m_gamma);
    op.offset = values_of(v.m_offset);
    op.exposure = values_of(v.m_exposure);
    op.lift = values_of(v.m_lift);
    op.gain = values_of(v.m_gain);
    op.saturation = v.m_saturation;
    op.pivot = v.m_pivot;
    op.pivot_black = v.m_pivotBlack;
    op.pivot_white = v.m_pivotWhite;
    op.clamp_black = v.m_clampBlack;
    op.clamp_white = v.m_clampWhite;
    op.one_stops_all = OCIO_VERSION_MINOR < 5;
    op.direction = direction_of(t);
    return op;
}

pixel::Op translate_op(const library::GradingRGBCurveTransform& t) {
    refuse_dynamic(t.isDynamic());
    pixel::RgbCurve op{style_of(t.getStyle()), t.getBypassLinToLog(), {}, direction_of(t)};
    const library::ConstGradingRGBCurveRcPtr curves = t.getValue();
    for (std::size_t i = 0; i < op.curve.size(); ++i) {
        op.curve[i] = points_of(*curves->getCurve(static_cast<library::RGBCurveType>(i)));
    }
    return op;
}

pixel::Op translate_op(const library::GradingToneTransform& t) {
    refuse_dynamic(t.isDynamic());
    const library::GradingTone& v = t.getValue();
    return pixel::GradingTone{style_of(t.getStyle()), zone_of(v.m_blacks),     zone_of(v.m_shadows),
                              zone_of(v.m_midtones),  zone_of(v.m_highlights), zone_of(v.m_whites),
                              v.m_scontrast,          direction_of(t)};
}

#if OCIO_VERSION_MINOR >= 5
pixel::Op translate_op(const library::GradingHueCurveTransform& t) {
    refuse_dynamic(t.isDynamic());
    const library::ConstGradingHueCurveRcPtr curves = t.getValue();
    if (curves->getDrawCurveOnly())
        throw NotKnown{"a hue curve that is only drawn is not supported by the SIMD code"};
    pixel::HueCurve op{
        style_of(t.getStyle()), t.getRGBToHSY() != library::HSY_TRANSFORM_NONE, {}, direction_of(t)};
    for (std::size_t i = 0; i < op.curve.size(); ++i)
        op.curve[i] = points_of(*curves->getCurve(static_cast<library::HueCurveType>(i)));
    return op;
}
#endif

} // namespace ocio
