#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "viewer/hand.h"
#include "viewer/screen.h"
#include "viewer/view_model.h"
#include "viewer/view_renderer.h"

namespace viewer {

class Items;
class Panels;

/// A model on a screen: draws it, and reacts to the user and to changed files.
class Viewer {
public:
    /// Throws diagnostics::Failure.
    Viewer(ViewModel& model, std::unique_ptr<Screen> screen, bool shows_panels);
    ~Viewer();
    Viewer(const Viewer&) = delete;
    Viewer& operator=(const Viewer&) = delete;

    /// Handles changed files and input, and draws once. Errors are shown.
    void run_frame();
    bool is_closed() const;

    /// Draws and writes what is drawn; waits for what is computed in the background. Throws
    /// diagnostics::Failure.
    void save_screenshot(const std::string& path);

    void show_panels(bool shown);
    /// The clickable items of the panels. Throws diagnostics::Failure when the panels are hidden.
    const Items& get_items() const;
    /// The error of the user's last action; empty when it succeeded, or without panels.
    std::optional<diagnostics::Diagnostic> get_error() const;
    /// Simulated mouse and keyboard for tests; `act` plays the queued input.
    Hand& get_hand() { return hand; }
    /// Runs frames until the queued input was played and its result is shown.
    void act();
    /// Opens files dropped on the window: an OCIO config, a CDL library, or images, of which the first is
    /// shown. Errors are shown.
    void drop(const std::vector<std::string>& paths);
    /// Reads the pixel at this screen position instead of the pointer's.
    void set_cursor(double x, double y) { cursor = Position{x, y}; }

    /// Draws, waits for the comparison of GPU and CPU, and returns it; null unless the layout compares.
    /// Throws diagnostics::Failure.
    const Difference* compare();

    ViewModel& get_model() { return model; }
    /// The camera, adjusted to the image as in the next draw.
    Camera& get_camera();
    ViewRenderer& get_renderer() { return *renderer; }

private:
    struct Position {
        double x;
        double y;
    };

    void draw();
    void draw_until_finished();
    void open_files(const std::vector<std::string>& paths);
    void set_error(std::optional<diagnostics::Diagnostic> error);
    Viewport get_image_area() const;
    std::optional<Position> get_cursor() const;

    ViewModel& model;
    std::unique_ptr<Screen> screen;
    std::unique_ptr<ViewRenderer> renderer;
    std::unique_ptr<Panels> panels;
    Hand hand;
    int frames_wanted = 0; ///< To be drawn though nothing happens.
    bool shows_panels;
    std::optional<Position> cursor;
};

} // namespace viewer
