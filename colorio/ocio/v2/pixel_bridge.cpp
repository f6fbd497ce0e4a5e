#include "colorio/ocio/v2/pixel_bridge.h"

#include <algorithm>
#include <cstdlib>
#include <sstream>
#include <utility>

#include "colorio/ocio/v2/pixel_bridge_grading.h"
#include "colorio/ocio/v2/pixel_bridge_tables.h"
#include "colorio/ocio/v2/pixel_bridge_words.h"
#include "pixel/describe.h"

namespace ocio {

namespace {

using ocio::translate_op; // LUTs, gradings and fixed functions

/// The flags that OpenColorIO's own CPU path runs with.
constexpr auto OPTIMIZATION = static_cast<library::OptimizationFlags>(
    library::OPTIMIZATION_LOSSLESS | library::OPTIMIZATION_NO_DYNAMIC_PROPERTIES);

/// The versions with which the results of pixel/ were compared. Others may round differently; before one is
/// added here, the tests of this file must pass with it.
constexpr bool LIBRARY_IS_MEASURED =
    OCIO_VERSION_MAJOR == 2 && (OCIO_VERSION_MINOR == 1 || OCIO_VERSION_MINOR == 5);

pixel::Negatives negatives_of(library::NegativeStyle style) {
    switch (style) {
    case library::NEGATIVE_CLAMP:
        return pixel::Negatives::Clamp;
    case library::NEGATIVE_MIRROR:
        return pixel::Negatives::Mirror;
    case library::NEGATIVE_PASS_THRU:
        return pixel::Negatives::PassThrough;
    case library::NEGATIVE_LINEAR:
        return pixel::Negatives::Linear;
    }
    throw NotKnown{"a style for negative values that is not supported by the SIMD code"};
}

pixel::Op translate_op(const library::MatrixTransform& t) {
    if (t.getDirection() != library::TRANSFORM_DIR_FORWARD)
        throw NotKnown{"a matrix that OpenColorIO has not inverted is not supported by the SIMD code"};
    pixel::Matrix op{};
    t.getMatrix(op.m.data());
    t.getOffset(op.offset.data());
    return op;
}

pixel::Op translate_op(const library::RangeTransform& t) {
    if (t.getStyle() != library::RANGE_CLAMP)
        throw NotKnown{"Range noClamp is not supported by the SIMD code"};
    const auto bound = [](bool has, double value) {
        return has ? std::optional<double>(value) : std::nullopt;
    };
    pixel::Range op{bound(t.hasMinInValue(), t.getMinInValue()), bound(t.hasMaxInValue(), t.getMaxInValue()),
                    bound(t.hasMinOutValue(), t.getMinOutValue()),
                    bound(t.hasMaxOutValue(), t.getMaxOutValue())};
    if (t.getDirection() == library::TRANSFORM_DIR_INVERSE) {
        std::swap(op.min_in, op.min_out);
        std::swap(op.max_in, op.max_out);
    }
    return op;
}

pixel::Op translate_op(const library::CDLTransform& t) {
    pixel::Cdl op{};
    t.getSlope(op.slope.data());
    t.getOffset(op.offset.data());
    t.getPower(op.power.data());
    op.saturation = t.getSat();
    op.style = t.getStyle() == library::CDL_ASC ? pixel::CdlStyle::Clamped : pixel::CdlStyle::Unclamped;
    op.direction = direction_of(t);
    return op;
}

pixel::Op translate_op(const library::ExponentTransform& t) {
    double value[4];
    t.getValue(value);
    pixel::Exponent op{};
    std::copy(value, value + 4, op.value.begin());
    op.negatives = negatives_of(t.getNegativeStyle());
    op.direction = direction_of(t);
    return op;
}

pixel::Op translate_op(const library::ExponentWithLinearTransform& t) {
    double gamma[4], offset[4];
    t.getGamma(gamma);
    t.getOffset(offset);
    pixel::LinearToeCurve op{};
    std::copy(gamma, gamma + 4, op.gamma.begin());
    std::copy(offset, offset + 4, op.offset.begin());
    op.negatives = negatives_of(t.getNegativeStyle());
    op.direction = direction_of(t);
    return op;
}

pixel::Op translate_op(const library::LogTransform& t) {
    return pixel::Log{t.getBase(), direction_of(t)};
}

/// The parameters that LogAffineTransform and LogCameraTransform share.
template <class T>
pixel::LogAffine log_parameters(const T& t) {
    pixel::LogAffine op{};
    double values[3];
    const auto keep = [&values](std::array<double, 3>& to) { std::copy(values, values + 3, to.begin()); };
    op.base = t.getBase();
    t.getLogSideSlopeValue(values);
    keep(op.log_slope);
    t.getLogSideOffsetValue(values);
    keep(op.log_offset);
    t.getLinSideSlopeValue(values);
    keep(op.lin_slope);
    t.getLinSideOffsetValue(values);
    keep(op.lin_offset);
    op.direction = direction_of(t);
    return op;
}

pixel::Op translate_op(const library::LogAffineTransform& t) {
    return log_parameters(t);
}

pixel::Op translate_op(const library::LogCameraTransform& t) {
    pixel::LogAffine op = log_parameters(t);
    double values[3];
    t.getLinSideBreakValue(values);
    op.lin_break = {values[0], values[1], values[2]};
    if (t.getLinearSlopeValue(values))
        op.linear_slope = {values[0], values[1], values[2]};
    return op;
}

/// "FixedFunction ACES_RedMod10", "GradingRGBCurveTransform".
std::string name_of(const library::Transform& transform) {
    if (transform.getTransformType() == library::TRANSFORM_TYPE_FIXED_FUNCTION) {
        const auto& function = dynamic_cast<const library::FixedFunctionTransform&>(transform);
        return std::string("FixedFunction ") + library::FixedFunctionStyleToString(function.getStyle());
    }
    std::ostringstream text; // "<Name parameter=value, ...>"
    text << transform;
    const std::string words = text.str();
    return words.substr(1, words.find_first_of(" >") - 1);
}

template <class T>
pixel::Op translate_as(const library::Transform& transform) {
    return translate_op(dynamic_cast<const T&>(transform));
}

pixel::Op translate_transform(const library::Transform& transform) {
    switch (transform.getTransformType()) {
    case library::TRANSFORM_TYPE_MATRIX:
        return translate_as<library::MatrixTransform>(transform);
    case library::TRANSFORM_TYPE_RANGE:
        return translate_as<library::RangeTransform>(transform);
    case library::TRANSFORM_TYPE_CDL:
        return translate_as<library::CDLTransform>(transform);
    case library::TRANSFORM_TYPE_EXPONENT:
        return translate_as<library::ExponentTransform>(transform);
    case library::TRANSFORM_TYPE_EXPONENT_WITH_LINEAR:
        return translate_as<library::ExponentWithLinearTransform>(transform);
    case library::TRANSFORM_TYPE_LOG:
        return translate_as<library::LogTransform>(transform);
    case library::TRANSFORM_TYPE_LOG_AFFINE:
        return translate_as<library::LogAffineTransform>(transform);
    case library::TRANSFORM_TYPE_LOG_CAMERA:
        return translate_as<library::LogCameraTransform>(transform);
    case library::TRANSFORM_TYPE_LUT1D:
        return translate_as<library::Lut1DTransform>(transform);
    case library::TRANSFORM_TYPE_LUT3D:
        return translate_as<library::Lut3DTransform>(transform);
    case library::TRANSFORM_TYPE_FIXED_FUNCTION:
        return translate_as<library::FixedFunctionTransform>(transform);
    case library::TRANSFORM_TYPE_EXPOSURE_CONTRAST:
        return translate_as<library::ExposureContrastTransform>(transform);
    case library::TRANSFORM_TYPE_GRADING_PRIMARY:
        return translate_as<library::GradingPrimaryTransform>(transform);
    case library::TRANSFORM_TYPE_GRADING_TONE:
        return translate_as<library::GradingToneTransform>(transform);
    case library::TRANSFORM_TYPE_GRADING_RGB_CURVE:
        return translate_as<library::GradingRGBCurveTransform>(transform);
#if OCIO_VERSION_MINOR >= 5
    case library::TRANSFORM_TYPE_GRADING_HUE_CURVE:
        return translate_as<library::GradingHueCurveTransform>(transform);
#endif
    default:
        throw NotKnown{name_of(transform) + " is not supported by the SIMD code"};
    }
}

/// A user's flags replace those with which the results were compared.
bool flags_are_overridden() {
    const char* flags = std::getenv(library::OCIO_OPTIMIZATION_FLAGS_ENVVAR);
    return flags && *flags;
}

pixel::OpChain translate_group(const library::GroupTransform& group) {
    pixel::OpChain chain;
    chain.reserve(static_cast<std::size_t>(group.getNumTransforms()));
    for (int i = 0; i < group.getNumTransforms(); ++i)
        chain.push_back(translate_transform(*group.getTransform(i)));
    return chain;
}

} // namespace

std::optional<pixel::OpChain> translate_operations(const library::GroupTransform& operations,
                                                   std::string& why_not) {
    try {
        if (!LIBRARY_IS_MEASURED)
            throw NotKnown{std::string("the results of OpenColorIO ") + library::GetVersion() +
                           " have not been measured"};
        if (flags_are_overridden())
            throw NotKnown{std::string(library::OCIO_OPTIMIZATION_FLAGS_ENVVAR) + " is set"};
        return translate_group(operations);
    } catch (const NotKnown& reason) {
        why_not = reason.words;
    } catch (const library::Exception& error) {
        why_not = std::string("OpenColorIO does not list its operations: ") + error.what();
    }
    return std::nullopt;
}

std::optional<pixel::OpChain> translate(const library::ConstProcessorRcPtr& processor, std::string* why_not) {
    std::string unwanted;
    const auto optimized =
        processor->getOptimizedProcessor(library::BIT_DEPTH_F32, library::BIT_DEPTH_F32, OPTIMIZATION);
    return translate_operations(*optimized->createGroupTransform(), why_not ? *why_not : unwanted);
}

std::string describe(const library::Transform& transform) {
    try {
        return pixel::describe_op(translate_transform(transform));
    } catch (const NotKnown&) {
        return name_of(transform);
    }
}

} // namespace ocio
