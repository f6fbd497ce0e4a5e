#include "viewer/script_commands.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <map>
#include <string_view>

#include <fmt/format.h>

#include "diagnostics/failure.h"
#include "viewer/items.h"
#include "viewer/script_values.h"
#include "viewer/viewer.h"
#include "workflow/nearest_names.h"

namespace viewer {

namespace {

using diagnostics::Code;
using diagnostics::fail;

constexpr int MAX_PATIENCE = 24 * 60 * 60; ///< Seconds.

void set_zoom(Viewer& viewer, const std::string& factor) {
    if (factor == "fit")
        viewer.get_camera().fit();
    else
        viewer.get_camera().set_zoom(parse_factor(factor));
}

void await_change(Viewer& viewer, const std::string& argument) {
    const double seconds = parse_number(argument);
    if (seconds < 0 || seconds > MAX_PATIENCE)
        fail(Code::SCRIPT_FAILED,
             fmt::format("cannot wait for {} s; the range is 0 to {} s", argument, MAX_PATIENCE));
    const auto patience = std::chrono::milliseconds(std::lround(1000 * seconds));
    if (!viewer.get_model().follow_changes(patience))
        fail(Code::SCRIPT_FAILED, fmt::format("no file changed within {} s", argument));
}

/// The CDL of the panels and the steps, in the order of their application.
void print_steps(const ViewModel& model, const std::string& cdl, const ScriptPrint& print) {
    std::vector<workflow::ColorStep> steps = model.get_steps();
    if (cdl != model.get_live_config().get_default_cdl())
        steps.insert(steps.begin(), {workflow::ColorStep::CDL, cdl});
    if (std::none_of(steps.begin(), steps.end(),
                     [](const workflow::ColorStep& step) { return step.kind == workflow::ColorStep::CDL; }))
        print("CDL: none");
    for (const workflow::ColorStep& step : steps)
        print(fmt::format("{}: {}{}", get_kind_name(step.kind), step.is_inverse ? "inverse of " : "",
                          step.name));
}

void print_state(Viewer& viewer, const ScriptPrint& print) {
    ViewModel& model = viewer.get_model();
    model.get_conversion(ViewModel::FIRST); // Errors of the conversion are printed too.
    const ColorSettings settings = model.get_settings(ViewModel::FIRST);
    print(fmt::format("image: {}", model.get_image() ? model.get_image()->path : ""));
    print(fmt::format("config: {}", model.get_live_config().get_config_name()));
    print(fmt::format("color space: {} ({})", settings.describe_source(), model.get_space_reason()));
    print_steps(model, settings.cdl, print);
    print(fmt::format("exposure: {:g}", settings.exposure));
    print(fmt::format("view: {}", settings.view));
    print(fmt::format("second view: {}", model.get_settings(ViewModel::SECOND).view));
    diagnostics::Diagnostics errors = model.get_errors();
    if (const auto& error = viewer.get_error())
        errors.push_back(*error);
    for (const diagnostics::Diagnostic& error : errors)
        print(fmt::format("error: {}", format_with_hint(error)));
}

void compare(Viewer& viewer, const ScriptPrint& print) {
    viewer.get_model().set_layout(Layout::DIFFERENCE);
    const Difference* difference = viewer.compare();
    if (!difference)
        throw diagnostics::Failure(diagnostics::add_context(
            "nothing to compare", viewer.get_model().get_errors(), Code::SCRIPT_FAILED));
    print(format_difference(*difference));
}

/// The item of that name. Throws diagnostics::Failure when there is none.
const Items::Item& find_item(Viewer& viewer, const std::string& name) {
    const Items& items = viewer.get_items();
    if (items.get_all().empty())
        viewer.act(); // There was no frame yet.
    if (const Items::Item* item = items.find(name))
        return *item;
    std::vector<std::string> names;
    for (const Items::Item& item : items.get_all())
        names.push_back(item.name);
    fail(Code::SCRIPT_FAILED, fmt::format("no item '{}' to click", name),
         workflow::did_you_mean(name, names));
}

/// `METHOD` is the kind of click.
template <void (Hand::*METHOD)(float, float)>
void click(Viewer& viewer, const std::string& name) {
    const Items::Item& item = find_item(viewer, name);
    (viewer.get_hand().*METHOD)(item.x, item.y);
    viewer.act();
}

template <bool SHIFT>
void drag(Viewer& viewer, const std::string& way) {
    const auto [x, y, to_x, to_y] = parse_numbers<4>(way);
    viewer.get_hand().drag(x, y, to_x, to_y, SHIFT);
    viewer.act();
}

void turn_wheel(Viewer& viewer, const std::string& turn) {
    const auto [x, y, notches] = parse_numbers<3>(turn);
    viewer.get_hand().turn_wheel(x, y, notches);
    viewer.act();
}

void press(Viewer& viewer, const std::string& key) {
    viewer.get_items();
    viewer.get_hand().press(key);
    viewer.act();
}

void type(Viewer& viewer, const std::string& text) {
    viewer.get_items();
    viewer.get_hand().type(text);
    viewer.act();
}

void drop(Viewer& viewer, const std::string& path) {
    viewer.get_items();
    viewer.drop({path});
}

void print_items(Viewer& viewer, const ScriptPrint& print) {
    for (const Items::Item& item : viewer.get_items().get_all())
        print(fmt::format("{:g} {:g} {}", item.x, item.y, item.name));
}

void show_next(Viewer& viewer, const std::string&) {
    viewer.get_model().step_image(1);
}

template <ViewModel::Side SIDE>
void set_view(Viewer& viewer, const std::string& label) {
    viewer.get_model().set_view(SIDE, label);
}

void set_exposure(Viewer& viewer, const std::string& stops) {
    viewer.get_model().set_exposure(static_cast<float>(parse_number(stops)));
}

void set_layout(Viewer& viewer, const std::string& name) {
    viewer.get_model().set_layout(parse_layout(name));
}

void wipe(Viewer& viewer, const std::string& position) {
    viewer.get_model().set_layout(Layout::WIPE);
    viewer.get_model().set_wipe(parse_number(position));
}

void set_difference_scale(Viewer& viewer, const std::string& factor) {
    viewer.get_model().set_difference_scale(static_cast<float>(parse_factor(factor)));
}

void pan(Viewer& viewer, const std::string& by) {
    const auto [x, y] = parse_numbers<2>(by);
    viewer.get_camera().pan(x, y);
}

void set_cursor(Viewer& viewer, const std::string& at) {
    const auto [x, y] = parse_numbers<2>(at);
    viewer.set_cursor(x, y);
}

void show_panels(Viewer& viewer, const std::string& shown) {
    viewer.show_panels(parse_switch(shown));
}

void save_screenshot(Viewer& viewer, const std::string& path) {
    viewer.save_screenshot(path);
}

using Run = decltype(ScriptCommand::run);

/// ScriptCommand::run of an action without an argument or without output, or of a method of the model.
template <void (*ACTION)(Viewer&, const std::string&)>
constexpr Run run_with =
    [](Viewer& viewer, const ScriptPrint&, const std::string& argument) { ACTION(viewer, argument); };
template <void (*ACTION)(Viewer&, const ScriptPrint&)>
constexpr Run print_with =
    [](Viewer& viewer, const ScriptPrint& print, const std::string&) { ACTION(viewer, print); };
template <auto METHOD>
constexpr Run call_model = [](Viewer& viewer, const ScriptPrint&, const std::string& argument) {
    (viewer.get_model().*METHOD)(argument);
};

} // namespace

const std::vector<ScriptCommand>& get_script_commands() {
    static const std::vector<ScriptCommand> commands = [] {
        const std::map<std::string_view, Run> actions = {
            {"open", call_model<&ViewModel::open>},
            {"next", run_with<show_next>},
            {"space", call_model<&ViewModel::set_input_space>},
            {"inverse-view", call_model<&ViewModel::set_inverse_view>},
            {"cdl", call_model<&ViewModel::set_cdl>},
            {"exposure", run_with<set_exposure>},
            {"view", run_with<set_view<ViewModel::FIRST>>},
            {"second-view", run_with<set_view<ViewModel::SECOND>>},
            {"layout", run_with<set_layout>},
            {"wipe", run_with<wipe>},
            {"difference-scale", run_with<set_difference_scale>},
            {"zoom", run_with<set_zoom>},
            {"pan", run_with<pan>},
            {"cursor", run_with<set_cursor>},
            {"panels", run_with<show_panels>},
            {"items", print_with<print_items>},
            {"click", run_with<click<&Hand::click>>},
            {"double-click", run_with<click<&Hand::double_click>>},
            {"press", run_with<press>},
            {"type", run_with<type>},
            {"drag", run_with<drag<false>>},
            {"shift-drag", run_with<drag<true>>},
            {"wheel", run_with<turn_wheel>},
            {"drop", run_with<drop>},
            {"config", call_model<&ViewModel::use_config>},
            {"cdl-library", call_model<&ViewModel::use_cdl_library>},
            {"await-change", run_with<await_change>},
            {"print", print_with<print_state>},
            {"compare", print_with<compare>},
            {"screenshot", run_with<save_screenshot>},
            {"quit", nullptr},
        };
        std::vector<ScriptCommand> made;
        for (const ScriptText& text : get_script_texts())
            made.push_back({text, actions.at(text.name)});
        return made;
    }();
    return commands;
}

} // namespace viewer
