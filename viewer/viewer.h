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

/// A model on a screen: draws it, follows the user and the files on disk.
class Viewer {
public:
    /// Throws GlError.
    Viewer(ViewModel& model, std::unique_ptr<Screen> screen, bool shows_panels);
    ~Viewer();
    Viewer(const Viewer&) = delete;
    Viewer& operator=(const Viewer&) = delete;

    /// Follows files and input and draws once. What goes wrong is shown.
    void run_frame();
    bool is_closed() const;

    /// Draws and writes what is drawn; waits for what is computed in the background. Throws
    /// diagnostics::Failure and GlError.
    void save_screenshot(const std::string& path);

    void show_panels(bool shown);
    /// What the panels show that can be clicked. Throws diagnostics::Failure when they are not shown.
    const Items& get_items() const;
    /// What went wrong of what the user asked for last; empty when nothing did, or without panels.
    std::string get_fault() const;
    /// Works the panels in place of the user; `act` has it do what it was told.
    Hand& get_hand() { return hand; }
    /// Runs frames until the hand is done and what it did is shown.
    void act();
    /// Opens what was dropped on the window: a configuration, a CDL library, or images, of which the first
    /// is shown. What goes wrong is shown.
    void drop(const std::vector<std::string>& paths);
    /// Has the pixel at this position of the screen read out, whatever the pointer does.
    void set_cursor(double x, double y) { cursor = Position{x, y}; }

    /// Draws, waits for the comparison of GPU and CPU that the layout asks for, and answers it; null when it
    /// asks for none. Throws GlError.
    const Difference* compare();

    ViewModel& get_model() { return model; }
    /// The camera, aimed at the image as the next draw shows it.
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
    void set_fault(const std::string& text);
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
