#include "benchmarks/pixel/conversions.h"

#include <cmath>
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

/// A table with an entry for each 16-bit float: the sRGB curve.
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

} // namespace

const std::vector<Conversion>& conversions() {
    constexpr auto FORWARD = library::TRANSFORM_DIR_FORWARD, INVERSE = library::TRANSFORM_DIR_INVERSE;
    static const std::vector<Conversion> all{
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
    };
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
