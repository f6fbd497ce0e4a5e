#pragma once

namespace viewer {

/// A rectangle of the window, in its pixels from the top left.
struct Viewport {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    bool contains(double at_x, double at_y) const {
        return at_x >= x && at_y >= y && at_x < x + width && at_y < y + height;
    }
};

/// From a position in a viewport to one in the image, both counted from the top left.
struct Placement {
    double origin_x; ///< Position of the image's top left corner in the viewport.
    double origin_y;
    double zoom; ///< Pixels of the window per pixel of the image.

    double to_image_x(double x) const { return (x - origin_x) / zoom; }
    double to_image_y(double y) const { return (y - origin_y) / zoom; }
};

/// The visible part of the image.
class Camera {
public:
    static constexpr double MIN_ZOOM = 1.0 / 64;
    static constexpr double MAX_ZOOM = 256;

    /// Takes the sizes of the viewport and of the image. An image of another size is fitted.
    void look_at(int viewport_width, int viewport_height, int image_width, int image_height);

    /// As large as fits, centered, also when the viewport changes.
    void fit() { fitting = true; }
    /// Pixels of the window per pixel of the image, within the limits. What is in the middle stays there.
    void set_zoom(double zoom);
    /// Multiplies the zoom; the pixel at the position in the viewport stays there.
    void zoom_at(double factor, double x, double y);
    /// Moves the image by so many pixels of the window.
    void pan(double x, double y);

    bool is_fitting() const { return fitting; }
    /// The image's corner is on a corner of the window's pixels, so that none is split at zoom 1.
    Placement get_placement() const;

private:
    struct Size {
        double width = 1;
        double height = 1;
    };

    double get_zoom() const;
    /// Changes from fitting to a fixed zoom and center.
    void settle();

    Size viewport;
    Size image;
    bool fitting = true;
    double zoom = 1;
    double middle_x = 0; ///< Position in the image that is in the middle of the viewport.
    double middle_y = 0;
};

} // namespace viewer
