#include "colorio/color_io_transforms.h"

#include "colorio/color_io_manager.h"
#include "colorio/convert/color_io_converter_state.h"
#include "colorio/facade/color_io_log.h"
#include "colorio/facade/module_boundary.h"
#include "colorio/ocio/transform_processors.h"

namespace {

ocio::TransformDirection to_library(ColorIOTransforms::Direction direction) {
    return direction == ColorIOTransforms::DIRECTION_INVERSE ? ocio::TRANSFORM_DIR_INVERSE
                                                             : ocio::TRANSFORM_DIR_FORWARD;
}

} // namespace

bool ColorIOConverter::State::configure_with(const MakeProcessor& make) {
    const ColorIOManager* const running = get_manager();
    const ocio::ConstConfigRcPtr config = running ? running->get_config() : ocio::ConstConfigRcPtr();
    bypass = false;
    configured = config && log_ocio_errors(LOG_ERROR, [&] { take(make(config)); });
    return configured;
}

template <class Make>
bool ColorIOConverter::configure_with(Make&& make) {
    return state &&
           at_boundary(
               false, [&] { return state->configure_with(make); }, [this] { state->configured = false; });
}

bool ColorIOTransforms::configure(ColorIOConverter& converter, const CoreString& source,
                                  const CoreString& destination) {
    return converter.configure_with([&](const ocio::ConstConfigRcPtr& config) {
        return ocio::get_processor(config, source.get_data(), destination.get_data());
    });
}

bool ColorIOTransforms::configure_looks(ColorIOConverter& converter, const CoreString& space,
                                        const CoreString& looks) {
    return converter.configure_with([&](const ocio::ConstConfigRcPtr& config) {
        return ocio::get_look_processor(config, space.get_data(), looks.get_data());
    });
}

bool ColorIOTransforms::configure_view(ColorIOConverter& converter, const CoreString& space,
                                       const CoreString& display, const CoreString& view) {
    return converter.configure_with([&](const ocio::ConstConfigRcPtr& config) {
        return ocio::get_processor(
            config, ocio::DisplayTransform{space.get_data(), display.get_data(), view.get_data()});
    });
}

bool ColorIOTransforms::configure_inverse_view(ColorIOConverter& converter, const CoreString& display,
                                               const CoreString& view, const CoreString& space) {
    return converter.configure_with([&](const ocio::ConstConfigRcPtr& config) {
        return ocio::get_inverse_view_processor(config, display.get_data(), view.get_data(),
                                                space.get_data());
    });
}

bool ColorIOTransforms::configure_named_transform(ColorIOConverter& converter, const CoreString& name,
                                                  Direction direction) {
    return converter.configure_with([&](const ocio::ConstConfigRcPtr& config) {
        return ocio::get_named_transform_processor(config, name.get_data(), to_library(direction));
    });
}

bool ColorIOTransforms::configure_file(ColorIOConverter& converter, const CoreString& path,
                                       Direction direction) {
    return converter.configure_with([&](const ocio::ConstConfigRcPtr& config) {
        return ocio::get_file_processor(config, path.get_data(), to_library(direction));
    });
}
