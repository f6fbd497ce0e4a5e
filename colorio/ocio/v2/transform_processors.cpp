#include "colorio/ocio/transform_processors.h"

#include "colorio/ocio/error.h"

namespace ocio {

ConstProcessorRcPtr get_inverse_view_processor(const ConstConfigRcPtr& config, const std::string& display,
                                               const std::string& view, const std::string& space) {
    const library::DisplayViewTransformRcPtr transform = library::DisplayViewTransform::Create();
    transform->setSrc(space.c_str());
    transform->setDisplay(display.c_str());
    transform->setView(view.c_str());
    transform->setDirection(TRANSFORM_DIR_INVERSE);
    return get_processor(config, transform);
}

ConstProcessorRcPtr get_named_transform_processor(const ConstConfigRcPtr& config, const std::string& name,
                                                  TransformDirection direction) {
    const library::ConstNamedTransformRcPtr named = config->getNamedTransform(name.c_str());
    if (!named)
        throw_error(diagnostics::Code::NAMED_TRANSFORM_UNKNOWN, "unknown named transform '" + name + "'",
                    name);
    if (const ConstTransformRcPtr stated = named->getTransform(direction))
        return get_processor(config, stated);
    const TransformDirection other =
        direction == TRANSFORM_DIR_FORWARD ? TRANSFORM_DIR_INVERSE : TRANSFORM_DIR_FORWARD;
    const library::GroupTransformRcPtr inverted = library::GroupTransform::Create();
    inverted->appendTransform(named->getTransform(other)->createEditableCopy());
    inverted->setDirection(TRANSFORM_DIR_INVERSE);
    return get_processor(config, ConstTransformRcPtr(inverted));
}

} // namespace ocio
