#include "colorio/ocio/lut_bake.h"

#include "colorio/ocio/bake_run.h"
#include "colorio/ocio/error.h"
#include "colorio/ocio/guarded.h"

namespace ocio {

namespace {

// Names that no config has.
constexpr char SOURCE[] = "colorio/source of the baked LUT";
constexpr char RESULT[] = "colorio/result of the baked LUT";

/// From the reference space of the config to the color space.
TransformRcPtr make_from_reference(const library::ColorSpace& space) {
    const library::GroupTransformRcPtr group = library::GroupTransform::Create();
    const auto from = space.getTransform(library::COLORSPACE_DIR_FROM_REFERENCE);
    const auto to = space.getTransform(library::COLORSPACE_DIR_TO_REFERENCE);
    if (from) {
        group->appendTransform(from->createEditableCopy());
    } else if (to) {
        const library::GroupTransformRcPtr inverted = library::GroupTransform::Create();
        inverted->appendTransform(to->createEditableCopy());
        inverted->setDirection(TRANSFORM_DIR_INVERSE);
        group->appendTransform(inverted);
    }
    return group;
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

ConstColorSpaceRcPtr find_space(const ConstConfigRcPtr& config, const std::string& name) {
    const ConstColorSpaceRcPtr space = config->getColorSpace(name.c_str());
    if (!space)
        throw_error(diagnostics::Code::COLOR_SPACE_UNKNOWN, "unknown color space '" + name + "'", name);
    if (space->isData())
        throw_error(diagnostics::Code::CONVERSION_IMPOSSIBLE,
                    "the color space '" + name + "' holds data, which is not converted", name);
    return space;
}

/// The source without the allocation that some formats would take as a shaper.
ColorSpaceRcPtr make_source(const library::ColorSpace& space) {
    const ColorSpaceRcPtr source = library::ColorSpace::Create(space.getReferenceSpaceType());
    source->setName(SOURCE);
    source->setTransform(make_from_reference(space), library::COLORSPACE_DIR_FROM_REFERENCE);
    return source;
}

/// A color space whose colors are those of the grid.
ColorSpaceRcPtr make_result(const library::ColorSpace& space, const LutBake& bake) {
    const ColorSpaceRcPtr result = library::ColorSpace::Create(space.getReferenceSpaceType());
    const library::GroupTransformRcPtr group = library::GroupTransform::Create();
    group->appendTransform(make_from_reference(space));
    group->appendTransform(make_lut(bake));
    result->setName(RESULT);
    result->setTransform(group, library::COLORSPACE_DIR_FROM_REFERENCE);
    return result;
}

} // namespace

std::string bake_lut(const ConstConfigRcPtr& config, const LutBake& bake) {
    return guarded([&] {
        const ConfigRcPtr carrier = config->createEditableCopy();
        carrier->addColorSpace(make_source(*find_space(config, bake.source)));
        const std::string& spaced_in = bake.shaper.empty() ? bake.source : bake.shaper;
        carrier->addColorSpace(make_result(*find_space(config, spaced_in), bake));
        return run_baker(carrier, bake, SOURCE, RESULT);
    });
}

} // namespace ocio
