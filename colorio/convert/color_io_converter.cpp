#include "colorio/color_io_converter.h"

#include <new>

#include "colorio/color_io.h"
#include "colorio/color_io_constants.h"
#include "colorio/color_io_manager.h"
#include "colorio/convert/color_io_converter_state.h"
#include "colorio/facade/color_io_log.h"
#include "colorio/facade/module_boundary.h"
#include "colorio/ocio/config.h"
#include "host/of/of_app.h"
#include "host/of/of_enum.h"
#include "host/of/of_object_factory.h"

namespace {

constexpr char FAILURE[] = "Color Management: failed to configure the color converter";

/// What converters are configured with.
struct Kind {
    const char* name;
    diagnostics::Code unknown;
};
constexpr Kind COLOR_SPACE{"color space", diagnostics::Code::COLOR_SPACE_UNKNOWN};
constexpr Kind CDL{"CDL", diagnostics::Code::CDL_UNKNOWN};

void log_missing(const char* end, const Kind& kind, const CoreString& name) {
    log_message(LOG_WARNING, FAILURE, ". ", end, " ", kind.name, " '", name, "' doesn't exist.\n");
    report(LOG_WARNING, kind.unknown, name,
           std::string("no ") + kind.name + " '" + std::string(name.view()) + "'");
}

/// Reports an error if no config is active.
void report_missing_config(const ocio::ConstConfigRcPtr& config) {
    if (!config)
        report(LOG_ERROR, diagnostics::Code::CONVERSION_IMPOSSIBLE, CoreString(), "no config is active");
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

bool ColorIOConverter::State::begin_configuration(bool nothing_asked) {
    bypass = nothing_asked;
    if (nothing_asked)
        return false;
    if (get_manager())
        return true;
    configured = false;
    report(LOG_ERROR, diagnostics::Code::USAGE, CoreString(), "color management is not running");
    return false;
}

bool ColorIOConverter::State::configure(const CoreString& source, const CoreString& destination) {
    const bool nothing_asked = source == destination || destination.is_empty() || source.is_empty();
    if (!begin_configuration(nothing_asked))
        return false;
    const ColorIOManager& running = *get_manager();
    const ocio::ConstConfigRcPtr config = running.get_config();
    report_missing_config(config);
    const CoreString from = get_short_name(running, source);
    const CoreString to = get_short_name(running, destination);

    const bool from_known = running.is_color_space_name(from);
    const bool to_known = running.is_color_space_name(to);
    if (!from_known)
        log_missing("Source", COLOR_SPACE, from);
    if (!to_known)
        log_missing("Destination", COLOR_SPACE, to);
    configured = config && from_known && to_known &&
                 log_ocio_errors(
                     LOG_ERROR, [&] { take(ocio::get_processor(config, from.get_data(), to.get_data())); },
                     [&] { log_message(LOG_ERROR, FAILURE, " from '", from, "' to '", to, "'.\n"); });
    return configured;
}

bool ColorIOConverter::State::configure_CDL(const CoreString& source, const CoreString& destination) {
    const ColorIOManager* const found = get_manager();
    const ocio::ConstConfigRcPtr config = found ? found->get_cdl_config() : ocio::ConstConfigRcPtr();
    const auto get_known = [&](const CoreString& name) {
        const bool known = config && ocio::get_color_space(config, name.get_data());
        return known ? name : ColorIOManager::s_default_CDL_name;
    };
    const CoreString from = get_known(source);
    const CoreString to = get_known(destination);
    if (!begin_configuration(to == from || from.is_empty() || to.is_empty()))
        return false;

    report_missing_config(config);
    const ColorIOManager& running = *found;
    const CoreBasicArray<CoreString>& names = running.get_CDL_names();
    const bool from_listed = is_local_CDL(from) || contains(names, from);
    const bool to_listed = is_local_CDL(to) || contains(names, to);
    if (!from_listed)
        log_missing("Source", CDL, from);
    if (!to_listed)
        log_missing("Destination", CDL, to);
    configured = from_listed && to_listed &&
                 log_ocio_errors(
                     LOG_WARNING, [&] { take(ocio::get_processor(config, from.get_data(), to.get_data())); },
                     [&] { log_message(LOG_WARNING, FAILURE, " from '", from, "' to '", to, "'.\n"); });
    return configured;
}

bool ColorIOConverter::State::configure_for_display(const CoreString& input, const CoreString& display,
                                                    const CoreString& view) {
    if (!begin_configuration(input.is_empty() || display.is_empty() || view.is_empty()))
        return false;
    const ColorIOManager& running = *get_manager();
    const ocio::ConstConfigRcPtr config = running.get_config();
    report_missing_config(config);
    const CoreString from = get_short_name(running, input);
    const bool from_known = running.is_color_space_name(from);
    if (!from_known)
        log_missing("Source", COLOR_SPACE, from);

    const ocio::DisplayTransform transform{from.get_data(), display.get_data(), view.get_data()};
    configured = config && from_known &&
                 log_ocio_errors(
                     LOG_ERROR, [&] { take(ocio::get_processor(config, transform)); },
                     // The display's closing quote is missing on purpose: the text of this message is fixed.
                     [&] {
                         log_message(LOG_ERROR, FAILURE, " from color space '", from, "' to display '",
                                     display, " with view '", view, "'.\n");
                     });
    return configured;
}

CoreString ColorIOConverter::State::get_color_space(const CoreString& name) const {
    if (!get_manager())
        return CoreString();
    const CoreString& wanted =
        name == ColorIO::s_default_scene_linear ? ColorIO::get_ROLE_SCENE_LINEAR() : name;
    OfApp* app = get_manager()->get_app();
    const OfEnum* spaces = app ? app->get_object_factory().get_enum("color_space") : nullptr;
    if (!spaces || spaces->get_value_from_label(wanted) == spaces->get_invalid_value())
        return CoreString();
    return wanted;
}

/// A configuration that fails with an exception leaves no conversion.
template <class Configure>
bool ColorIOConverter::settle(Configure&& configure) {
    if (!state) {
        report(LOG_ERROR, diagnostics::Code::OUT_OF_MEMORY, CoreString(), "out of memory");
        return false;
    }
    return at_boundary(
        false, [&] { return configure(*state); }, [&] { state->configured = false; });
}

bool ColorIOConverter::configure(const CoreString& source, const CoreString& destination) {
    return settle([&](State& to_settle) { return to_settle.configure(source, destination); });
}

bool ColorIOConverter::configure_CDL(const CoreString& source, const CoreString& destination) {
    return settle([&](State& to_settle) { return to_settle.configure_CDL(source, destination); });
}

bool ColorIOConverter::configure_for_display(const CoreString& input, const CoreString& display,
                                             const CoreString& view) {
    return settle([&](State& to_settle) { return to_settle.configure_for_display(input, display, view); });
}

bool ColorIOConverter::configure_for_display(CoreBasicString input, CoreBasicString display_view) {
    return settle([&](State& to_settle) {
        const char separator = ColorIOManager::DISPLAY_SEPARATOR;
        return to_settle.configure_for_display(CoreString(input),
                                               CoreString::before_first(display_view, separator),
                                               CoreString::after_first(display_view, separator));
    });
}

CoreString ColorIOConverter::get_color_space(const CoreString& name) const {
    if (!state)
        return CoreString();
    return at_boundary(CoreString(), [&] { return state->get_color_space(name); });
}
