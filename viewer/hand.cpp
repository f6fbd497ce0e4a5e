#include "viewer/hand.h"

#include <fmt/format.h>
#include <imgui.h>

#include "diagnostics/failure.h"
#include "viewer/panel_input.h"

namespace viewer {

namespace {

struct Key {
    const char* name;
    int key; ///< of ImGuiKey
};
constexpr Key KEYS[] = {{"Enter", ImGuiKey_Enter},
                        {"Escape", ImGuiKey_Escape},
                        {"Up", ImGuiKey_UpArrow},
                        {"Down", ImGuiKey_DownArrow},
                        {"Left", ImGuiKey_LeftArrow},
                        {"Right", ImGuiKey_RightArrow},
                        {"PageUp", ImGuiKey_PageUp},
                        {"PageDown", ImGuiKey_PageDown},
                        {"Backspace", ImGuiKey_Backspace},
                        {"Delete", ImGuiKey_Delete},
                        {"Tab", ImGuiKey_Tab}};

int find_key(const std::string& name) {
    for (const Key& key : KEYS)
        if (name == key.name)
            return key.key;
    diagnostics::fail(diagnostics::Code::USAGE, fmt::format("no key '{}'", name),
                      "keys: " + Hand::get_key_names());
}

} // namespace

std::string Hand::get_key_names() {
    std::string names;
    for (const Key& key : KEYS)
        names += (names.empty() ? "" : ", ") + std::string(key.name);
    return names;
}

Hand::Step Hand::at_rest() const {
    Step step;
    step.x = x;
    step.y = y;
    return step;
}

void Hand::move(float to_x, float to_y) {
    x = to_x;
    y = to_y;
    steps.push_back(at_rest());
}

void Hand::click(float at_x, float at_y) {
    move(at_x, at_y);
    steps.push_back(at_rest());
    steps.back().button = true;
    steps.push_back(at_rest());
}

void Hand::double_click(float at_x, float at_y) {
    click(at_x, at_y);
    click(at_x, at_y);
}

void Hand::drag(float from_x, float from_y, float to_x, float to_y, bool shift) {
    move(from_x, from_y);
    for (const float way : {0.0f, 0.5f, 1.0f}) {
        steps.push_back(at_rest());
        Step& step = steps.back();
        step.x = from_x + way * (to_x - from_x);
        step.y = from_y + way * (to_y - from_y);
        step.button = true;
        step.shift = shift;
    }
    move(to_x, to_y);
}

void Hand::turn_wheel(float at_x, float at_y, float notches) {
    move(at_x, at_y);
    steps.push_back(at_rest());
    steps.back().wheel = notches;
}

void Hand::press(const std::string& name) {
    const int key = find_key(name);
    steps.push_back(at_rest());
    steps.back().key = key;
    steps.push_back(at_rest());
}

void Hand::type(const std::string& text) {
    steps.push_back(at_rest());
    steps.back().text = text;
}

void Hand::act() {
    if (steps.empty())
        return;
    const Step step = std::move(steps.front());
    steps.pop_front();
    panel_input::set_pointer(step.x, step.y);
    panel_input::set_left_button(step.button);
    panel_input::set_shift(step.shift);
    if (step.wheel != 0)
        panel_input::turn_wheel(step.wheel);
    if (held_key >= 0)
        panel_input::set_key(held_key, false);
    held_key = step.key;
    if (held_key >= 0)
        panel_input::set_key(held_key, true);
    ImGui::GetIO().AddInputCharactersUTF8(step.text.c_str());
}

} // namespace viewer
