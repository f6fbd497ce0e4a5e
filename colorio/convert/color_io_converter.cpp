#include "colorio/color_io_converter.h"

#include <new>

#include "colorio/color_io.h"
#include "colorio/color_io_constants.h"
#include "colorio/color_io_manager.h"
#include "colorio/convert/color_io_converter_state.h"
#include "colorio/facade/color_io_log.h"
#include "colorio/ocio/config.h"

namespace {

constexpr char FAILURE[] = "Color Management: failed to configure the color converter";

void log_missing(const char* end, const char* kind, const CoreString& name) {
    log_message(LOG_WARNING, FAILURE, ". ", end, " ", kind, " '", name, "' doesn't exist.\n");
}

bool contains(const CoreBasicArray<CoreString>& names, const CoreString& name) {
    for (const CoreString& candidate : names)
        if (candidate == name)
            return true;
    return false;
}

bool is_local_CDL(const CoreString& name) {
    return name == INPUT_LOCAL_CDL || name == OUTPUT_LOCAL_CDL;
}

CoreString get_short_name(const ColorIOManager& manager, const CoreString& name) {
    return CoreString::after_first(name, manager.get_color_space_enum_separator());
}

} // namespace

ColorIOConverter::ColorIOConverter() : state(new (std::nothrow) State) {
    if (state)
        state->manager = ColorIOManager::s_instance;
}

const ColorIOManager* ColorIOConverter::State::get_manager() const {
    return manager == ColorIOManager::s_instance ? manager : nullptr;
}

ColorIOConverter::~ColorIOConverter() {
    delete state;
}

bool ColorIOConverter::is_configured() const {
    return state && state->configured;
}

bool ColorIOConverter::is_enabled() const {
    return is_configured() && !state->bypass;
}

bool ColorIOConverter::begin_configuration(bool nothing_asked) {
    if (!state)
        return false;
    state->bypass = nothing_asked;
    if (nothing_asked)
        return false;
    if (!state->get_manager())
        state->configured = false;
    return state->get_manager();
}

bool ColorIOConverter::configure(const CoreString& source, const CoreString& destination) {
    const bool nothing_asked = source == destination || destination.is_empty() || source.is_empty();
    if (!begin_configuration(nothing_asked))
        return false;
    const ColorIOManager& manager = *state->get_manager();
    const ocio::ConstConfigRcPtr config = manager.get_config();
    const CoreString from = get_short_name(manager, source);
    const CoreString to = get_short_name(manager, destination);

    const bool from_known = contains(manager.get_color_space_names(), from);
    const bool to_known = contains(manager.get_color_space_names(), to);
    if (!from_known)
        log_missing("Source", "color space", from);
    if (!to_known)
        log_missing("Destination", "color space", to);
    state->configured =
        config && from_known && to_known &&
        log_ocio_errors(
            LOG_ERROR,
            [&] { state->processor = ocio::get_processor(config, from.get_data(), to.get_data()); },
            [&] { log_message(LOG_ERROR, FAILURE, " from '", from, "' to '", to, "'.\n"); });
    return state->configured;
}

bool ColorIOConverter::configure_CDL(const CoreString& source, const CoreString& destination) {
    if (!state)
        return false;
    const ColorIOManager* const found = state->get_manager();
    const ocio::ConstConfigRcPtr config = found ? found->get_cdl_config() : ocio::ConstConfigRcPtr();
    const auto get_known = [&](const CoreString& name) {
        const bool known = config && ocio::get_color_space(config, name.get_data());
        return known ? name : ColorIOManager::s_default_CDL_name;
    };
    const CoreString from = get_known(source);
    const CoreString to = get_known(destination);
    if (!begin_configuration(to == from || from.is_empty() || to.is_empty()))
        return false;

    const ColorIOManager& manager = *found;
    const CoreBasicArray<CoreString>& names = manager.get_CDL_names();
    const bool from_listed = is_local_CDL(from) || contains(names, from);
    const bool to_listed = is_local_CDL(to) || contains(names, to);
    if (!from_listed)
        log_missing("Source", "CDL", from);
    if (!to_listed)
        log_missing("Destination", "CDL", to);
    state->configured =
        from_listed && to_listed &&
        log_ocio_errors(
            LOG_WARNING,
            [&] { state->processor = ocio::get_processor(config, from.get_data(), to.get_data()); },
            [&] { log_message(LOG_WARNING, FAILURE, " from '", from, "' to '", to, "'.\n"); });
    return state->configured;
}

bool ColorIOConverter::configure_for_display(const CoreString& input, const CoreString& display,
                                             const CoreString& view) {
    if (!begin_configuration(input.is_empty() || display.is_empty() || view.is_empty()))
        return false;
    const ColorIOManager& manager = *state->get_manager();
    const ocio::ConstConfigRcPtr config = manager.get_config();
    const CoreString from = get_short_name(manager, input);
    const bool from_known = contains(manager.get_color_space_names(), from);
    if (!from_known)
        log_missing("Source", "color space", from);

    const ocio::DisplayTransform transform{from.get_data(), display.get_data(), view.get_data()};
    state->configured =
        config && from_known &&
        log_ocio_errors(
            LOG_ERROR, [&] { state->processor = ocio::get_processor(config, transform); },
            // The display's closing quote is left out on purpose: readers of old logs search for this text.
            [&] {
                log_message(LOG_ERROR, FAILURE, " from color space '", from, "' to display '", display,
                            " with view '", view, "'.\n");
            });
    return state->configured;
}

bool ColorIOConverter::configure_for_display(CoreBasicString input, CoreBasicString display_view) {
    const char separator = ColorIOManager::DISPLAY_SEPARATOR;
    return configure_for_display(CoreString(input), CoreString::before_first(display_view, separator),
                                 CoreString::after_first(display_view, separator));
}
