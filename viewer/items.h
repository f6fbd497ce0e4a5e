#pragma once

#include <string>
#include <vector>

namespace viewer {

/// Where the things lie that one can click, by what is written on them, as the last frame declared them.
class Items {
public:
    struct Item {
        std::string name;
        float x; ///< Its middle, in units of the window system from the top left.
        float y;
    };

    void end_frame();
    /// Notes what was declared last.
    void note(const std::string& name);
    /// Notes what will be declared at the current position, of that size.
    void note_next(const std::string& name, float width, float height);

    const std::vector<Item>& get_all() const { return shown; }
    /// The last one of that name, which lies above the others; null when there is none.
    const Item* find(const std::string& name) const;

private:
    std::vector<Item> shown; ///< Of the last whole frame.
    std::vector<Item> declared;
};

} // namespace viewer
