#include "viewer/panel_input.h"

#include <imgui.h>

namespace viewer::panel_input {

#if IMGUI_VERSION_NUM < 18700

const int KEYPAD_ENTER = ImGuiKey_KeyPadEnter;

void use_plain_keys() {
    for (int key = 0; key < ImGuiKey_COUNT; ++key)
        ImGui::GetIO().KeyMap[key] = key;
}

bool is_pressed(int key) {
    return ImGui::IsKeyPressed(ImGui::GetKeyIndex(key));
}

void set_pointer(float x, float y) {
    ImGui::GetIO().MousePos = ImVec2(x, y);
}

void set_left_button(bool is_down) {
    ImGui::GetIO().MouseDown[ImGuiMouseButton_Left] = is_down;
}

void set_shift(bool is_down) {
    ImGui::GetIO().KeyShift = is_down;
}

void set_key(int key, bool is_down) {
    ImGui::GetIO().KeysDown[ImGui::GetKeyIndex(key)] = is_down;
}

void turn_wheel(float notches) {
    ImGui::GetIO().MouseWheel += notches;
}

#else

namespace {

/// Events of one frame are taken in that frame: who sends them has already spread them.
ImGuiIO& io_for_events() {
    ImGuiIO& io = ImGui::GetIO();
    io.ConfigInputTrickleEventQueue = false;
    return io;
}

} // namespace

const int KEYPAD_ENTER = ImGuiKey_KeypadEnter;

void use_plain_keys() {}

bool is_pressed(int key) {
    return ImGui::IsKeyPressed(static_cast<ImGuiKey>(key));
}

void set_pointer(float x, float y) {
    io_for_events().AddMousePosEvent(x, y);
}

void set_left_button(bool is_down) {
    io_for_events().AddMouseButtonEvent(ImGuiMouseButton_Left, is_down);
}

void set_shift(bool is_down) {
    io_for_events().AddKeyEvent(ImGuiMod_Shift, is_down);
}

void set_key(int key, bool is_down) {
    io_for_events().AddKeyEvent(static_cast<ImGuiKey>(key), is_down);
}

void turn_wheel(float notches) {
    io_for_events().AddMouseWheelEvent(0, notches);
}

#endif

} // namespace viewer::panel_input
