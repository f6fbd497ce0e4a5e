#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "viewer/screen.h"

/// A screen in memory that wants a frame only when the user does something, as a window does.
class IdleScreen : public viewer::Screen {
public:
    explicit IdleScreen(Size size) : screen(viewer::make_offscreen(size)) {}

    /// The next frame is wanted.
    void wake() { is_woken = true; }
    /// Has files dropped on it.
    void drop(std::vector<std::string> paths) { drops = std::move(paths); }
    void close() { closed = true; }
    /// How many frames were shown.
    int count_frames() const { return frames; }

    Size get_size() const override { return screen->get_size(); }
    bool begin_frame() override {
        screen->begin_frame();
        if (!is_woken)
            std::this_thread::sleep_for(std::chrono::milliseconds(1)); // The window waits for input here.
        return std::exchange(is_woken, false);
    }
    void begin_panels() override { screen->begin_panels(); }
    void close_panels() override { screen->close_panels(); }
    void end_frame() override { ++frames; }
    bool is_closed() const override { return closed; }
    std::vector<std::string> take_drops() override { return std::exchange(drops, {}); }

private:
    std::unique_ptr<viewer::Screen> screen;
    bool is_woken = false;
    bool closed = false;
    int frames = 0;
    std::vector<std::string> drops;
};
