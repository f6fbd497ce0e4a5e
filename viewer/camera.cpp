#include "viewer/camera.h"

#include <algorithm>
#include <cmath>

namespace viewer {

void Camera::look_at(int viewport_width, int viewport_height, int image_width, int image_height) {
    viewport = {std::max(1.0, double(viewport_width)), std::max(1.0, double(viewport_height))};
    const Size size = {std::max(1.0, double(image_width)), std::max(1.0, double(image_height))};
    if (size.width != image.width || size.height != image.height)
        fit();
    image = size;
}

double Camera::get_zoom() const {
    if (!fitting)
        return zoom;
    return std::min(viewport.width / image.width, viewport.height / image.height);
}

void Camera::settle() {
    if (!fitting)
        return;
    zoom = get_zoom();
    middle_x = image.width / 2;
    middle_y = image.height / 2;
    fitting = false;
}

void Camera::set_zoom(double wanted) {
    settle();
    zoom = std::clamp(wanted, MIN_ZOOM, MAX_ZOOM);
}

void Camera::zoom_at(double factor, double x, double y) {
    settle();
    const double from_middle_x = x - viewport.width / 2;
    const double from_middle_y = y - viewport.height / 2;
    const double held_x = middle_x + from_middle_x / zoom;
    const double held_y = middle_y + from_middle_y / zoom;
    set_zoom(zoom * factor);
    middle_x = held_x - from_middle_x / zoom;
    middle_y = held_y - from_middle_y / zoom;
}

void Camera::pan(double x, double y) {
    settle();
    middle_x -= x / zoom;
    middle_y -= y / zoom;
}

Placement Camera::get_placement() const {
    const double scale = get_zoom();
    const double x = fitting ? image.width / 2 : middle_x;
    const double y = fitting ? image.height / 2 : middle_y;
    return {std::round(viewport.width / 2 - x * scale), std::round(viewport.height / 2 - y * scale), scale};
}

} // namespace viewer
