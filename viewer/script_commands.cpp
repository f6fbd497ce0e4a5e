#include "viewer/script_commands.h"

#include <chrono>
#include <cmath>

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

void set_zoom(Camera& camera, const std::string& argument) {
    if (argument == "fit")
        camera.fit();
    else
        camera.set_zoom(parse_factor(argument));
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

void print_state(Viewer& viewer, const ScriptPrint& print) {
    ViewModel& model = viewer.get_model();
    model.get_conversion(ViewModel::FIRST); // Errors of the conversion are printed too.
    const ColorSettings settings = model.get_settings(ViewModel::FIRST);
    print(fmt::format("image: {}", model.get_image() ? model.get_image()->path : ""));
    print(fmt::format("config: {}", model.get_live_config().get_config_name()));
    print(fmt::format("color space: {} ({})", settings.input_space, model.get_space_reason()));
    print(fmt::format("cdl: {}", settings.cdl));
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

void click(Viewer& viewer, const std::string& name, void (Hand::*click)(float, float)) {
    const Items::Item& item = find_item(viewer, name);
    (viewer.get_hand().*click)(item.x, item.y);
    viewer.act();
}

void drag(Viewer& viewer, const std::string& way, bool shift) {
    const auto [x, y, to_x, to_y] = parse_numbers<4>(way);
    viewer.get_hand().drag(x, y, to_x, to_y, shift);
    viewer.act();
}

void print_items(Viewer& viewer, const ScriptPrint& print) {
    for (const Items::Item& item : viewer.get_items().get_all())
        print(fmt::format("{:g} {:g} {}", item.x, item.y, item.name));
}

} // namespace

const std::vector<ScriptCommand>& get_script_commands() {
    static const std::vector<ScriptCommand> commands = {
        {"open", "FILE", "show an image",
         [](Viewer& viewer, const ScriptPrint&, const std::string& path) { viewer.get_model().open(path); }},
        {"next", "", "show the next image",
         [](Viewer& viewer, const ScriptPrint&, const std::string&) { viewer.get_model().step_image(1); }},
        {"space", "NAME", "set the input color space",
         [](Viewer& viewer, const ScriptPrint&, const std::string& name) {
             viewer.get_model().set_input_space(name);
         }},
        {"cdl", "NAME", "apply a CDL",
         [](Viewer& viewer, const ScriptPrint&, const std::string& name) {
             viewer.get_model().set_cdl(name);
         }},
        {"exposure", "STOPS", "set the exposure",
         [](Viewer& viewer, const ScriptPrint&, const std::string& stops) {
             viewer.get_model().set_exposure(static_cast<float>(parse_number(stops)));
         }},
        {"view", "LABEL", "set the view",
         [](Viewer& viewer, const ScriptPrint&, const std::string& label) {
             viewer.get_model().set_view(ViewModel::FIRST, label);
         }},
        {"second-view", "LABEL", "set the view to compare with",
         [](Viewer& viewer, const ScriptPrint&, const std::string& label) {
             viewer.get_model().set_view(ViewModel::SECOND, label);
         }},
        {"layout", "NAME", "set the layout: single, wipe, two or difference",
         [](Viewer& viewer, const ScriptPrint&, const std::string& word) {
             viewer.get_model().set_layout(parse_layout(word));
         }},
        {"wipe", "POSITION", "wipe between the views at a position from 0 to 1",
         [](Viewer& viewer, const ScriptPrint&, const std::string& position) {
             viewer.get_model().set_layout(Layout::WIPE);
             viewer.get_model().set_wipe(parse_number(position));
         }},
        {"difference-scale", "FACTOR", "multiply the differences shown",
         [](Viewer& viewer, const ScriptPrint&, const std::string& factor) {
             viewer.get_model().set_difference_scale(static_cast<float>(parse_factor(factor)));
         }},
        {"zoom", "FACTOR", "set the zoom: screen pixels per image pixel, or 'fit'",
         [](Viewer& viewer, const ScriptPrint&, const std::string& factor) {
             set_zoom(viewer.get_camera(), factor);
         }},
        {"pan", "X Y", "move the image by screen pixels",
         [](Viewer& viewer, const ScriptPrint&, const std::string& by) {
             const auto [x, y] = parse_numbers<2>(by);
             viewer.get_camera().pan(x, y);
         }},
        {"cursor", "X Y", "read the pixel at a screen position",
         [](Viewer& viewer, const ScriptPrint&, const std::string& at) {
             const auto [x, y] = parse_numbers<2>(at);
             viewer.set_cursor(x, y);
         }},
        {"panels", "on|off", "show or hide the panels",
         [](Viewer& viewer, const ScriptPrint&, const std::string& shown) {
             viewer.show_panels(parse_switch(shown));
         }},
        {"items", "", "print the clickable items and their positions in the window",
         [](Viewer& viewer, const ScriptPrint& print, const std::string&) { print_items(viewer, print); }},
        {"click", "NAME", "click an item of the panels",
         [](Viewer& viewer, const ScriptPrint&, const std::string& name) {
             click(viewer, name, &Hand::click);
         }},
        {"double-click", "NAME", "double-click an item of the panels",
         [](Viewer& viewer, const ScriptPrint&, const std::string& name) {
             click(viewer, name, &Hand::double_click);
         }},
        {"press", "KEY", "press a key: Enter, Escape, Up, Down and so on",
         [](Viewer& viewer, const ScriptPrint&, const std::string& key) {
             viewer.get_items();
             viewer.get_hand().press(key);
             viewer.act();
         }},
        {"type", "TEXT", "type text",
         [](Viewer& viewer, const ScriptPrint&, const std::string& text) {
             viewer.get_items();
             viewer.get_hand().type(text);
             viewer.act();
         }},
        {"drag", "X Y X Y", "drag the pointer between two positions in the window",
         [](Viewer& viewer, const ScriptPrint&, const std::string& way) { drag(viewer, way, false); }},
        {"shift-drag", "X Y X Y", "the same with the Shift key held",
         [](Viewer& viewer, const ScriptPrint&, const std::string& way) { drag(viewer, way, true); }},
        {"wheel", "X Y NOTCHES", "turn the mouse wheel at a position in the window",
         [](Viewer& viewer, const ScriptPrint&, const std::string& turn) {
             const auto [x, y, notches] = parse_numbers<3>(turn);
             viewer.get_hand().turn_wheel(x, y, notches);
             viewer.act();
         }},
        {"drop", "FILE", "drop a file on the window",
         [](Viewer& viewer, const ScriptPrint&, const std::string& path) {
             viewer.get_items();
             viewer.drop({path});
         }},
        {"config", "FILE", "use an OCIO config; without a file, the built-in one",
         [](Viewer& viewer, const ScriptPrint&, const std::string& path) {
             viewer.get_model().use_config(path);
         }},
        {"cdl-library", "FILE", "use the color corrections of a CDL file",
         [](Viewer& viewer, const ScriptPrint&, const std::string& path) {
             viewer.get_model().use_cdl_library(path);
         }},
        {"await-change", "SECONDS", "wait until a changed file has been read again",
         [](Viewer& viewer, const ScriptPrint&, const std::string& seconds) {
             await_change(viewer, seconds);
         }},
        {"print", "", "print the current state",
         [](Viewer& viewer, const ScriptPrint& print, const std::string&) { print_state(viewer, print); }},
        {"compare", "", "print the difference between GPU and CPU",
         [](Viewer& viewer, const ScriptPrint& print, const std::string&) { compare(viewer, print); }},
        {"screenshot", "FILE", "save the screen as an image",
         [](Viewer& viewer, const ScriptPrint&, const std::string& path) { viewer.save_screenshot(path); }},
        {"quit", "", "end the viewer", nullptr},
    };
    return commands;
}

} // namespace viewer
