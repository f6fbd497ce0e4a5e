#pragma once

#include <string>
#include <vector>

namespace viewer {

/// Positions of the clickable items of the last frame, by their labels.
class Items {
public:
    struct Item {
        std::string name;
        float x; ///< Its middle, in units of the window system from the top left.
        float y;
    };

    void end_frame();
    /// Records the last widget.
    void note(const std::string& name);
    /// Records the next widget, at the current position and of that size.
    void note_next(const std::string& name, float width, float height);

    const std::vector<Item>& get_all() const { return shown; }
    /// The last one of that name, which is above the others; null when there is none.
    const Item* find(const std::string& name) const;

private:
    std::vector<Item> shown; ///< Of the last whole frame.
    std::vector<Item> declared;
};

} // namespace viewer
