#include "viewer/script.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <sstream>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "diagnostics/failure.h"
#include "gl/gl_error.h"
#include "viewer/items.h"
#include "viewer/viewer.h"
#include "workflow/nearest_names.h"

namespace viewer {

namespace {

using diagnostics::Code;
using diagnostics::fail;

constexpr char BLANKS[] = " \t\r";
constexpr char QUIT[] = "quit";
constexpr int MAX_PATIENCE = 24 * 60 * 60; ///< Seconds.

std::string trim(const std::string& text) {
    const std::size_t first = text.find_first_not_of(BLANKS);
    return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(BLANKS) - first + 1);
}

/// Numbers with blanks between them. Throws diagnostics::Failure when there are more or fewer, or others than
/// numbers.
template <std::size_t COUNT>
std::array<float, COUNT> parse_numbers(const std::string& text) {
    std::array<float, COUNT> numbers;
    std::string rest = text;
    for (float& number : numbers) {
        const std::size_t gap = std::min(rest.find_first_of(BLANKS), rest.size());
        number = static_cast<float>(parse_number(rest.substr(0, gap)));
        rest = trim(rest.substr(gap));
    }
    if (!rest.empty())
        fail(Code::SCRIPT_FAILED, fmt::format("'{}' has more than {} numbers", text, COUNT));
    return numbers;
}

/// Throws diagnostics::Failure for other numbers than those above 0.
double parse_factor(const std::string& text) {
    const double factor = parse_number(text);
    if (factor <= 0)
        fail(Code::SCRIPT_FAILED, fmt::format("'{}' is not a positive number", text));
    return factor;
}

bool parse_switch(const std::string& text) {
    if (text != "on" && text != "off")
        fail(Code::SCRIPT_FAILED, fmt::format("'{}' is neither 'on' nor 'off'", text));
    return text == "on";
}

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

void print_state(Viewer& viewer, const Script::Print& print) {
    ViewModel& model = viewer.get_model();
    model.get_conversion(ViewModel::FIRST); // What cannot be shown is told too.
    const ColorSettings settings = model.get_settings(ViewModel::FIRST);
    print(fmt::format("image: {}", model.get_image() ? model.get_image()->path : ""));
    print(fmt::format("configuration: {}", model.get_host().get_config_name()));
    print(fmt::format("space: {} ({})", settings.input_space, model.get_space_reason()));
    print(fmt::format("cdl: {}", settings.cdl));
    print(fmt::format("exposure: {:g}", settings.exposure));
    print(fmt::format("view: {}", settings.view));
    print(fmt::format("second view: {}", model.get_settings(ViewModel::SECOND).view));
    std::vector<std::string> faults = model.get_faults();
    faults.push_back(viewer.get_fault());
    for (const std::string& fault : faults)
        if (!fault.empty())
            print(fmt::format("fault: {}", fault));
}

void compare(Viewer& viewer, const Script::Print& print) {
    viewer.get_model().set_layout(Layout::DIFFERENCE);
    const Difference* difference = viewer.compare();
    if (!difference)
        fail(Code::SCRIPT_FAILED, fmt::format("there is nothing to compare: {}",
                                              fmt::join(viewer.get_model().get_faults(), "; ")));
    print(format_difference(*difference));
}

/// What bears that name, and where it lies. Throws diagnostics::Failure when there is nothing of the kind.
const Items::Item& find_item(Viewer& viewer, const std::string& name) {
    const Items& items = viewer.get_items();
    if (items.get_all().empty())
        viewer.act(); // There was no frame yet.
    if (const Items::Item* item = items.find(name))
        return *item;
    std::vector<std::string> names;
    for (const Items::Item& item : items.get_all())
        names.push_back(item.name);
    fail(Code::SCRIPT_FAILED, fmt::format("nothing named '{}' to click", name),
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

void print_items(Viewer& viewer, const Script::Print& print) {
    for (const Items::Item& item : viewer.get_items().get_all())
        print(fmt::format("{:g} {:g} {}", item.x, item.y, item.name));
}

struct ScriptCommand {
    const char* name;
    const char* argument;
    const char* description;
    void (*run)(Viewer& viewer, const Script::Print& print, const std::string& argument);
};

constexpr ScriptCommand COMMANDS[] = {
    {"open", "FILE", "show an image",
     [](Viewer& viewer, const Script::Print&, const std::string& path) { viewer.get_model().open(path); }},
    {"next", "", "show the next image",
     [](Viewer& viewer, const Script::Print&, const std::string&) { viewer.get_model().step_image(1); }},
    {"space", "NAME", "take the image to be in a color space",
     [](Viewer& viewer, const Script::Print&, const std::string& name) {
         viewer.get_model().set_input_space(name);
     }},
    {"cdl", "NAME", "apply a color decision list",
     [](Viewer& viewer, const Script::Print&, const std::string& name) { viewer.get_model().set_cdl(name); }},
    {"exposure", "STOPS", "expose",
     [](Viewer& viewer, const Script::Print&, const std::string& stops) {
         viewer.get_model().set_exposure(static_cast<float>(parse_number(stops)));
     }},
    {"view", "LABEL", "show through a view",
     [](Viewer& viewer, const Script::Print&, const std::string& label) {
         viewer.get_model().set_view(ViewModel::FIRST, label);
     }},
    {"second-view", "LABEL", "the view to compare it with",
     [](Viewer& viewer, const Script::Print&, const std::string& label) {
         viewer.get_model().set_view(ViewModel::SECOND, label);
     }},
    {"layout", "NAME", "single, wipe, two or difference",
     [](Viewer& viewer, const Script::Print&, const std::string& word) {
         viewer.get_model().set_layout(parse_layout(word));
     }},
    {"wipe", "POSITION", "wipe between the views, 0 to 1",
     [](Viewer& viewer, const Script::Print&, const std::string& position) {
         viewer.get_model().set_layout(Layout::WIPE);
         viewer.get_model().set_wipe(parse_number(position));
     }},
    {"difference-scale", "FACTOR", "enlarge the differences shown",
     [](Viewer& viewer, const Script::Print&, const std::string& factor) {
         viewer.get_model().set_difference_scale(static_cast<float>(parse_factor(factor)));
     }},
    {"zoom", "FACTOR", "pixels of the screen per pixel of the image, or fit",
     [](Viewer& viewer, const Script::Print&, const std::string& factor) {
         set_zoom(viewer.get_camera(), factor);
     }},
    {"pan", "X Y", "move the image by pixels of the screen",
     [](Viewer& viewer, const Script::Print&, const std::string& by) {
         const auto [x, y] = parse_numbers<2>(by);
         viewer.get_camera().pan(x, y);
     }},
    {"cursor", "X Y", "read out the pixel at a position of the screen",
     [](Viewer& viewer, const Script::Print&, const std::string& at) {
         const auto [x, y] = parse_numbers<2>(at);
         viewer.set_cursor(x, y);
     }},
    {"panels", "on|off", "show the panels",
     [](Viewer& viewer, const Script::Print&, const std::string& shown) {
         viewer.show_panels(parse_switch(shown));
     }},
    {"items", "", "print what can be clicked, with its place in the window",
     [](Viewer& viewer, const Script::Print& print, const std::string&) { print_items(viewer, print); }},
    {"click", "NAME", "click what bears that name in the panels",
     [](Viewer& viewer, const Script::Print&, const std::string& name) {
         click(viewer, name, &Hand::click);
     }},
    {"double-click", "NAME", "the same, twice",
     [](Viewer& viewer, const Script::Print&, const std::string& name) {
         click(viewer, name, &Hand::double_click);
     }},
    {"press", "KEY", "press Enter, Escape, Up, Down or the like",
     [](Viewer& viewer, const Script::Print&, const std::string& key) {
         viewer.get_items();
         viewer.get_hand().press(key);
         viewer.act();
     }},
    {"type", "TEXT", "type letters",
     [](Viewer& viewer, const Script::Print&, const std::string& text) {
         viewer.get_items();
         viewer.get_hand().type(text);
         viewer.act();
     }},
    {"drag", "X Y X Y", "drag the pointer from one place of the window to another",
     [](Viewer& viewer, const Script::Print&, const std::string& way) { drag(viewer, way, false); }},
    {"shift-drag", "X Y X Y", "the same with the shift key held",
     [](Viewer& viewer, const Script::Print&, const std::string& way) { drag(viewer, way, true); }},
    {"wheel", "X Y NOTCHES", "turn the wheel at a place of the window",
     [](Viewer& viewer, const Script::Print&, const std::string& turn) {
         const auto [x, y, notches] = parse_numbers<3>(turn);
         viewer.get_hand().turn_wheel(x, y, notches);
         viewer.act();
     }},
    {"drop", "FILE", "drop a file on the window",
     [](Viewer& viewer, const Script::Print&, const std::string& path) {
         viewer.get_items();
         viewer.drop({path});
     }},
    {"config", "FILE", "use a configuration; without a file, the built-in one",
     [](Viewer& viewer, const Script::Print&, const std::string& path) {
         viewer.get_model().use_config(path);
     }},
    {"cdl-library", "FILE", "list the corrections of a CDL file",
     [](Viewer& viewer, const Script::Print&, const std::string& path) {
         viewer.get_model().use_cdl_library(path);
     }},
    {"await-change", "SECONDS", "wait until a file was changed and read again",
     [](Viewer& viewer, const Script::Print&, const std::string& seconds) { await_change(viewer, seconds); }},
    {"print", "", "print what is shown",
     [](Viewer& viewer, const Script::Print& print, const std::string&) { print_state(viewer, print); }},
    {"compare", "", "print how far GPU and CPU are apart",
     [](Viewer& viewer, const Script::Print& print, const std::string&) { compare(viewer, print); }},
    {"screenshot", "FILE", "write what is on the screen",
     [](Viewer& viewer, const Script::Print&, const std::string& path) { viewer.save_screenshot(path); }},
    {QUIT, "", "end the viewer", [](Viewer&, const Script::Print&, const std::string&) {}},
};

std::size_t find_command(const std::string& name, const std::string& place) {
    const auto* const found =
        std::find_if(std::begin(COMMANDS), std::end(COMMANDS),
                     [&](const ScriptCommand& command) { return command.name == name; });
    if (found != std::end(COMMANDS))
        return static_cast<std::size_t>(found - COMMANDS);
    std::vector<std::string> names;
    for (const ScriptCommand& command : COMMANDS)
        names.emplace_back(command.name);
    diagnostics::fail(Code::USAGE, fmt::format("{}: no command '{}'", place, name),
                      workflow::did_you_mean(name, names));
}

} // namespace

double parse_number(const std::string& text) {
    double number = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || stop != end || !std::isfinite(number))
        fail(Code::SCRIPT_FAILED, fmt::format("'{}' is not a number", text));
    return number;
}

Layout parse_layout(const std::string& word) {
    constexpr std::pair<const char*, Layout> LAYOUTS[] = {{"single", Layout::SINGLE},
                                                          {"wipe", Layout::WIPE},
                                                          {"two", Layout::SIDE_BY_SIDE},
                                                          {"difference", Layout::DIFFERENCE}};
    for (const auto& [name, layout] : LAYOUTS)
        if (word == name)
            return layout;
    fail(Code::SCRIPT_FAILED, fmt::format("no layout '{}'", word), "layouts: single, wipe, two, difference");
}

Script::Script(std::istream& text, const std::string& name) {
    std::string line;
    for (int number = 1; std::getline(text, line); ++number) {
        line = trim(line);
        if (line.empty() || line.front() == '#')
            continue;
        const std::size_t gap = std::min(line.find_first_of(BLANKS), line.size());
        const std::string place = fmt::format("{}:{}", name, number);
        lines.push_back({place, find_command(line.substr(0, gap), place), trim(line.substr(gap))});
    }
}

bool Script::run(Viewer& viewer, const Script::Print& print) const {
    for (const Line& line : lines) {
        const ScriptCommand& command = COMMANDS[line.command];
        if (command.name == QUIT)
            return true;
        try {
            command.run(viewer, print, line.argument);
            viewer.run_frame();
        } catch (const diagnostics::Failure& error) {
            throw diagnostics::Failure(
                diagnostics::add_context(line.place, error.get_diagnostics(), Code::SCRIPT_FAILED));
        } catch (const gl::GlError& error) {
            fail(Code::SCRIPT_FAILED, fmt::format("{}: {}", line.place, error.what()));
        }
    }
    return false;
}

std::string Script::get_help() {
    std::string help;
    for (const ScriptCommand& command : COMMANDS)
        help += fmt::format("  {:<28}{}\n", fmt::format("{} {}", command.name, command.argument),
                            command.description);
    return help;
}

} // namespace viewer
