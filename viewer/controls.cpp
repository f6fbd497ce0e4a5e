#include <algorithm>
#include <cmath>

#include <imgui.h>

#include "viewer/panels.h"

namespace viewer {

namespace {

/// Zoom of one notch of the wheel.
constexpr double WHEEL_ZOOM = 1.25;
constexpr float EXPOSURE_STEP = 0.5f;

} // namespace

void Panels::press_key(ViewModel& model, char letter) {
    switch (letter) {
    case 'p':
        open_dialog(FileKind::IMAGE, model);
        break;
    case 'c':
        open_dialog(FileKind::CONFIG, model);
        break;
    case 'l':
        open_dialog(FileKind::CDL_LIBRARY, model);
        break;
    case 'f':
        model.get_camera().fit();
        break;
    case '1':
        model.get_camera().set_zoom(1);
        break;
    case 'o':
        model.set_layout(Layout::SINGLE);
        break;
    case 'w':
        model.set_layout(Layout::WIPE);
        break;
    case 's':
        model.set_layout(Layout::SIDE_BY_SIDE);
        break;
    case 'd':
        model.set_layout(Layout::DIFFERENCE);
        break;
    case '[':
        model.set_exposure(model.get_settings(ViewModel::FIRST).exposure - EXPOSURE_STEP);
        break;
    case ']':
        model.set_exposure(model.get_settings(ViewModel::FIRST).exposure + EXPOSURE_STEP);
        break;
    case '<':
        attempt([&] { model.step_image(-1); });
        break;
    case '>':
        attempt([&] { model.step_image(1); });
        break;
    default:
        break;
    }
}

void Panels::steer(ViewModel& model, const Viewport& area) {
    const ImGuiIO& io = ImGui::GetIO();
    for (int i = 0; i < io.InputQueueCharacters.Size && !io.WantTextInput && !dialog.is_open(); ++i)
        press_key(model, static_cast<char>(std::min<ImWchar>(io.InputQueueCharacters[i], 127)));
    if (io.WantCaptureMouse)
        return;
    const double scale = get_pixel_scale();
    const double x = io.MousePos.x * scale;
    const double y = io.MousePos.y * scale;
    if (io.MouseWheel != 0 && area.contains(x, y))
        model.get_camera().zoom_at(std::pow(WHEEL_ZOOM, io.MouseWheel), x - area.x, y - area.y);
    if (!io.MouseDown[ImGuiMouseButton_Left] && !io.MouseDown[ImGuiMouseButton_Middle])
        return;
    if (model.get_layout() == Layout::WIPE && io.KeyShift && area.width > 0)
        model.set_wipe((x - area.x) / area.width);
    else if (io.MouseDelta.x != 0 || io.MouseDelta.y != 0)
        model.get_camera().pan(io.MouseDelta.x * scale, io.MouseDelta.y * scale);
}

} // namespace viewer
