#pragma once

#include <memory>
#include <optional>
#include <string>

#include "tool/viewer/screen.h"
#include "tool/viewer/view_model.h"
#include "tool/viewer/view_renderer.h"

namespace tool {

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
    bool is_closed() const { return screen->is_closed(); }

    /// Draws and writes what is drawn; waits for what is computed in the background. Throws CommandError and
    /// GlError.
    void save_screenshot(const std::string& path);

    void show_panels(bool shown);
    /// Has the pixel at this position of the screen read out, whatever the pointer does.
    void set_cursor(double x, double y) { cursor = Position{x, y}; }

    /// Draws, waits for the comparison of GPU and CPU that the layout asks for, and answers it; null when it
    /// asks for none. Throws GlError.
    const Difference* compare();

    ViewModel& get_model() { return model; }
    /// The camera, aimed at the picture as the next draw shows it.
    Camera& get_camera();
    ViewRenderer& get_renderer() { return *renderer; }

private:
    struct Position {
        double x;
        double y;
    };

    void draw();
    void draw_until_finished();
    void open_drops();
    void set_fault(const std::string& text);
    Viewport get_picture_area() const;
    std::optional<Position> get_cursor() const;

    ViewModel& model;
    std::unique_ptr<Screen> screen;
    std::unique_ptr<ViewRenderer> renderer;
    std::unique_ptr<Panels> panels;
    bool shows_panels;
    std::optional<Position> cursor;
};

} // namespace tool
