#pragma once

#include "tests/viewer/idle_screen.h"
#include "tests/viewer/viewer_fixture.h"
#include "viewer/items.h"
#include "viewer/viewer.h"

/// A viewer with its panels on a screen that waits for the user, on the configuration of the fixture: the
/// view "Screen.Shown" halves, "Screen.Raw" changes nothing. The image is shown pixel by pixel.
class ScreenTest : public ViewerTest {
protected:
    static constexpr int PANELS = 340;
    static constexpr int WIDTH = 300;
    static constexpr int HEIGHT = 460;

    ScreenTest();

    /// Runs the viewer's loop until the condition holds, as long as that may take on a slow machine. True
    /// when it does.
    template <class Condition>
    bool run_until(const Condition& condition) {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (!condition() && std::chrono::steady_clock::now() < end)
            viewer->run_frame();
        return condition();
    }
    /// Clicks the item of that name in the panels.
    void click(const std::string& name);
    void double_click(const std::string& name);
    void press(const std::string& key);
    void type(const std::string& text);
    /// Where it lies. A failure when there is none.
    const viewer::Items::Item& find(const std::string& name) const;
    /// True when the panels show something of that name.
    bool shows(const std::string& name) const { return viewer->get_items().find(name) != nullptr; }

    /// What is on the screen.
    ShownImage take_screenshot();
    /// Expects all of the image, whose ramps go up to 1.5, to be shown as `gain` times its values.
    void expect_shown(double gain);
    /// Count of panel pixels in the color of errors.
    int count_error_pixels();

    std::string image = folder.file("ramps.exr");
    std::string config;
    std::unique_ptr<workflow::LiveConfig> live_config;
    std::unique_ptr<viewer::ViewModel> model;
    IdleScreen* screen = nullptr;
    std::unique_ptr<viewer::Viewer> viewer;
};
