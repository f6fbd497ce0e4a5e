#pragma once

#include <future>
#include <memory>
#include <optional>

#include "viewer/difference.h"
#include "viewer/image_painter.h"
#include "viewer/view_model.h"

namespace viewer {

/// One pixel of the image, before and after the conversions.
struct PixelReadout {
    int x;
    int y;
    float before[4];
    float cpu[4];
    float gpu[4];
};

/// Draws a model into the bound framebuffer.
class ViewRenderer {
public:
    /// Needs a current core-profile context, always the same.
    ViewRenderer() = default;

    /// Computes the layout in `area`, and sets the sizes of the model's camera. False when there is nothing
    /// to draw.
    bool aim(ViewModel& model, const Viewport& area);

    /// Draws the layout into `area`, and gives the model's camera its size. Throws diagnostics::Failure.
    void draw(ViewModel& model, const Viewport& area, int framebuffer_height);

    /// The pixel below a position of the window, as the last `draw` showed it; nothing beside the image.
    std::optional<PixelReadout> read_pixel(ViewModel& model, double x, double y);

    /// The last comparison that was finished for what the model shows; null before and while it is made.
    const Difference* get_difference() const { return difference ? &*difference : nullptr; }
    /// True when a comparison was finished that no `draw` has shown.
    bool has_news() const;
    /// Waits for a comparison under way. True when there was one: the next `draw` shows it.
    bool finish_difference();

    const ImagePainter& get_painter() const { return painter; }

private:
    struct Pane {
        Viewport viewport; ///< What the camera looks into.
        Viewport clip;     ///< What of it is seen.
        ViewModel::Side side;
    };

    static ImagePainter::Subject get_subject(ViewModel& model, ViewModel::Side side);
    void arrange(const ViewModel& model, const Viewport& area);
    void draw_difference(ViewModel& model, const Viewport& area, int framebuffer_height);
    void update_difference(const ImagePainter::Subject& wanted);

    ImagePainter painter;
    std::vector<Pane> panes;
    ImagePainter::Subject compared; ///< What is being compared, or was.
    std::future<Difference> comparison;
    std::optional<Difference> difference;
};

} // namespace viewer
