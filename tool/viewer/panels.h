#pragma once

#include <string>

#include "tool/viewer/view_renderer.h"

namespace tool {

class Console;

/// The panels beside the picture, and what mouse and keyboard do to the model. The panels' library and its
/// OpenGL part live as long as this.
class Panels {
public:
    /// Width of the column of panels, in units of the window system.
    static constexpr int WIDTH = 340;

    /// Needs a current core-profile context. Throws GlError.
    Panels();
    ~Panels();
    Panels(const Panels&) = delete;
    Panels& operator=(const Panels&) = delete;

    /// Begins a frame; the screen has given size and input.
    void begin();
    /// Declares the panels and lets them change the model.
    void show(ViewModel& model, const ViewRenderer& renderer, const PixelReadout* readout);
    /// Mouse and keys outside of the panels; `area` is the picture's.
    void steer(ViewModel& model, const Viewport& area);
    /// Draws what was declared.
    void end();

    /// A fault of something that the user asked for, shown until the next thing goes well.
    void set_fault(const std::string& text) { fault = text; }

    /// Pixels of the framebuffer per unit of the window system.
    static float get_pixel_scale();

private:
    void show_faults(const ViewModel& model) const;
    void show_pictures(ViewModel& model);
    void show_colors(ViewModel& model);
    void show_layout(ViewModel& model, const ViewRenderer& renderer);
    void show_configuration(ViewModel& model);
    void show_readout(const PixelReadout* readout) const;
    template <class Change>
    void attempt(const Change& change);

    std::string fault;
    std::string config_path;
    std::string filter;
};

} // namespace tool
