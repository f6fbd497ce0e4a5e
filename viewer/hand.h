#pragma once

#include <deque>
#include <string>

namespace viewer {

/// Simulated mouse and keyboard for scripts. Positions are in units of the window system from the top left.
/// Input is queued as steps, and one step is played per frame.
class Hand {
public:
    void move(float x, float y);
    void click(float x, float y);
    void double_click(float x, float y);
    void drag(float from_x, float from_y, float to_x, float to_y, bool shift);
    /// Notches away from the user are positive.
    void turn_wheel(float x, float y, float notches);
    /// A key by its name, as `get_key_names` lists them. Throws diagnostics::Failure for others.
    void press(const std::string& key);
    void type(const std::string& text);

    bool is_busy() const { return !steps.empty(); }
    /// Plays the next step, if there is one: between the screen's input and the panels' frame.
    void act();

    /// "Enter, Escape, ..."
    static std::string get_key_names();

private:
    struct Step {
        float x;
        float y;
        bool button = false;
        bool shift = false;
        float wheel = 0;
        int key = -1; ///< Held down; -1 for none.
        std::string text;
    };
    Step at_rest() const;

    std::deque<Step> steps;
    float x = -1; ///< Where the pointer is after all steps.
    float y = -1;
    int held_key = -1;
};

} // namespace viewer
