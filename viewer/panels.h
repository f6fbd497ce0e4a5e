#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>

#include "diagnostics/diagnostic.h"
#include "viewer/file_dialog.h"
#include "viewer/file_kind.h"
#include "viewer/items.h"
#include "viewer/view_renderer.h"

namespace viewer {

/// The panels beside the image, and the mouse and keyboard actions on the model. Owns Dear ImGui and its
/// OpenGL part.
class Panels {
public:
    /// Width of the column of panels, in units of the window system.
    static constexpr int WIDTH = 340;

    /// Needs a current core-profile context. Throws diagnostics::Failure.
    Panels();
    ~Panels();
    Panels(const Panels&) = delete;
    Panels& operator=(const Panels&) = delete;

    /// Begins a frame; the screen must have set size and input before.
    void begin();
    /// Builds the panels, which may change the model.
    void show(ViewModel& model, const ViewRenderer& renderer, const PixelReadout* readout);
    /// Mouse and keyboard outside of the panels; `area` is that of the image.
    void steer(ViewModel& model, const Viewport& area);
    /// Draws the panels.
    void end();

    /// The clickable items and their positions.
    const Items& get_items() const { return items; }
    /// True once the user has chosen to quit.
    bool wants_to_quit() const { return quits; }

    using Error = std::optional<diagnostics::Diagnostic>;
    /// An error of a user action, shown until the next action succeeds.
    void set_error(Error wanted) { error = std::move(wanted); }
    const Error& get_error() const { return error; }
    /// Why the image cannot be drawn; empty when it can.
    void set_drawing_error(Error wanted) { drawing_error = std::move(wanted); }

    /// Pixels of the framebuffer per unit of the window system.
    static float get_pixel_scale();

private:
    void show_menus(ViewModel& model);
    void show_file_menu(ViewModel& model);
    void open_dialog(FileKind kind, const ViewModel& model);
    void show_dialog(ViewModel& model);
    void show_errors(const ViewModel& model) const;
    void show_images(ViewModel& model);
    void show_colors(ViewModel& model);
    void show_exposure(ViewModel& model);
    void show_layout(ViewModel& model, const ViewRenderer& renderer);
    void show_readout(const PixelReadout* readout) const;
    void show_configuration(ViewModel& model);
    void press_key(ViewModel& model, char letter);
    /// Makes a change for the user; an error is shown.
    void attempt(const std::function<void()>& change);

    Items items;
    FileDialog dialog;
    FileKind dialog_kind = FileKind::CONFIG;
    Error error;
    Error drawing_error;
    std::string filter;
    bool quits = false;
};

} // namespace viewer
