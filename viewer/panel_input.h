#pragma once

/// Mouse and keyboard input to and from Dear ImGui, for its releases before and since 1.87, which renamed and
/// moved most of this. Keys are those of ImGuiKey.
namespace viewer::panel_input {

/// The one of the numeric keypad.
extern const int KEYPAD_ENTER;

/// Once before a frame, where no window system says which numbers its keys have.
void use_plain_keys();

/// True in the frame in which a key goes down, and while it repeats.
bool is_pressed(int key);

/// Input from the next frame on. Positions are in units of the window system from the top left.
void set_pointer(float x, float y);
void set_left_button(bool is_down);
void set_shift(bool is_down);
void set_key(int key, bool is_down);

/// Notches away from the user are positive.
void turn_wheel(float notches);

} // namespace viewer::panel_input
