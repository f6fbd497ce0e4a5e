#pragma once

#include <memory>
#include <string>
#include <vector>

namespace viewer {

/// Where the viewer draws: a window, or an image in memory. Its OpenGL 3.3 core context is current as long
/// as it lives.
class Screen {
public:
    struct Size {
        int width;
        int height;
    };

    virtual ~Screen() = default;

    /// In pixels of the framebuffer.
    virtual Size get_size() const = 0;
    /// Processes the user's input, after waiting briefly for it, and binds the framebuffer. False when there
    /// is nothing new to draw.
    virtual bool begin_frame() = 0;
    /// Passes the size and the user's input to Dear ImGui.
    virtual void begin_panels() = 0;
    /// To be called before Dear ImGui is destroyed.
    virtual void close_panels() = 0;
    /// Shows what was drawn.
    virtual void end_frame() = 0;
    virtual bool is_closed() const = 0;
    /// Paths of files that were dropped since the last call.
    virtual std::vector<std::string> take_drops() = 0;
};

/// A screen without a window. Throws diagnostics::Failure.
std::unique_ptr<Screen> make_offscreen(Screen::Size size);

/// A window. Throws diagnostics::Failure when none can be opened (GPU_UNAVAILABLE), or because no display is
/// available (DISPLAY_MISSING).
std::unique_ptr<Screen> make_window(Screen::Size size, const std::string& title);

} // namespace viewer
