#include "colorio/ocio/lut_bake.h"

#include "colorio/ocio/bake_run.h"
#include "colorio/ocio/config_side.h"
#include "colorio/ocio/error.h"
#include "colorio/ocio/guarded.h"

namespace ocio {

namespace {

// Names that no config has.
constexpr char SOURCE[] = "colorio/source of the baked LUT";
constexpr char SHAPER[] = "colorio/shaper of the baked LUT";
constexpr char RESULT[] = "colorio/result of the baked LUT";

/// From the shaper to the source. OpenColorIO inverts it, and takes it for a curve of each channel: the
/// conversion of the config would mix channels by rounding, or because its primaries differ.
library::Lut1DTransformRcPtr make_curve(const LutBake& bake) {
    const auto size = static_cast<unsigned long>(bake.curve.size() / 3);
    const library::Lut1DTransformRcPtr curve = library::Lut1DTransform::Create(size, false);
    curve->setInterpolation(INTERP_LINEAR);
    const float* value = bake.curve.data();
    for (unsigned long i = 0; i < size; ++i, value += 3)
        curve->setValue(i, value[0], value[1], value[2]);
    return curve;
}

library::Lut3DTransformRcPtr make_lut(const LutBake& bake) {
    const auto size = static_cast<unsigned long>(bake.size);
    const library::Lut3DTransformRcPtr lut = library::Lut3DTransform::Create(size);
    lut->setInterpolation(INTERP_LINEAR);
    const float* value = bake.grid.data();
    for (unsigned long blue = 0; blue < size; ++blue)
        for (unsigned long green = 0; green < size; ++green)
            for (unsigned long red = 0; red < size; ++red, value += 3)
                lut->setValue(red, green, blue, value[0], value[1], value[2]);
    return lut;
}

void check_space(const ConstConfigRcPtr& config, const std::string& name) {
    const ConstColorSpaceRcPtr space = config->getColorSpace(name.c_str());
    if (!space)
        throw_error(diagnostics::Code::COLOR_SPACE_UNKNOWN, "unknown color space '" + name + "'", name);
    if (space->isData())
        throw_error(diagnostics::Code::CONVERSION_IMPOSSIBLE,
                    "the color space '" + name + "' holds data, which is not converted", name);
}

/// A color space that the transform leads to from the one that the grid is evenly spaced in.
void add_space(const char* name, const TransformRcPtr& transform, const ConfigRcPtr& carrier) {
    const ColorSpaceRcPtr space = library::ColorSpace::Create(library::REFERENCE_SPACE_SCENE);
    space->setName(name);
    if (transform)
        space->setTransform(transform, library::COLORSPACE_DIR_FROM_REFERENCE);
    carrier->addColorSpace(space);
}

} // namespace

std::string bake_lut(const ConstConfigRcPtr& config, const LutBake& bake) {
    return guarded([&] {
        const bool has_shaper = !bake.shaper.empty();
        check_space(config, bake.source);
        if (has_shaper)
            check_space(config, bake.shaper);
        if (has_shaper && bake.curve.empty())
            throw_error(diagnostics::Code::USAGE, "a shaper needs its curve");
        const ConfigRcPtr carrier = copy_config(config);
        add_space(SOURCE, has_shaper ? make_curve(bake) : TransformRcPtr(), carrier);
        add_space(SHAPER, {}, carrier);
        add_space(RESULT, make_lut(bake), carrier);
        return run_baker(carrier, bake, SOURCE, has_shaper ? SHAPER : "", RESULT);
    });
}

} // namespace ocio
