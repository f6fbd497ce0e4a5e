#include "viewer/viewer.h"

#include <algorithm>
#include <utility>

#include <epoxy/gl.h>
#include <imgui.h>

#include "diagnostics/failure.h"
#include "viewer/attempt.h"
#include "viewer/file_kind.h"
#include "viewer/panels.h"
#include "viewer/screenshot.h"

namespace viewer {

namespace {

/// What a click opens is laid out in one frame and shown in the next.
constexpr int FRAMES_TO_SETTLE = 3;

} // namespace

Viewer::Viewer(ViewModel& model, std::unique_ptr<Screen> wanted_screen, bool shows_panels)
    : model(model), screen(std::move(wanted_screen)), renderer(std::make_unique<ViewRenderer>()),
      shows_panels(shows_panels) {
    if (shows_panels)
        panels = std::make_unique<Panels>();
}

Viewer::~Viewer() {
    screen->close_panels();
}

void Viewer::show_panels(bool shown) {
    shows_panels = shown;
    if (shown && !panels)
        panels = std::make_unique<Panels>();
}

Viewport Viewer::get_image_area() const {
    const Screen::Size size = screen->get_size();
    const int left = shows_panels ? static_cast<int>(Panels::WIDTH * Panels::get_pixel_scale()) : 0;
    return {left, 0, size.width - left, size.height};
}

Camera& Viewer::get_camera() {
    renderer->aim(model, get_image_area());
    return model.get_camera();
}

bool Viewer::is_closed() const {
    return screen->is_closed() || (panels && panels->wants_to_quit());
}

void Viewer::run_frame() {
    bool draws = screen->begin_frame();
    if (auto error = find_error([&] { draws = model.follow_changes() || draws; }))
        set_error(std::move(error));
    if (const std::vector<std::string> dropped = screen->take_drops(); !dropped.empty())
        drop(dropped);
    draws = draws || renderer->has_news() || hand.is_busy() || frames_wanted > 0;
    if (!draws)
        return;
    frames_wanted = std::max(0, frames_wanted - 1);
    draw();
    screen->end_frame();
}

void Viewer::act() {
    while (hand.is_busy())
        run_frame();
    for (frames_wanted = FRAMES_TO_SETTLE; frames_wanted > 0;)
        run_frame();
}

const Items& Viewer::get_items() const {
    if (!panels || !shows_panels)
        diagnostics::fail(diagnostics::Code::USAGE, "the panels are hidden", "'panels on' shows them");
    return panels->get_items();
}

std::optional<diagnostics::Diagnostic> Viewer::get_error() const {
    return panels ? panels->get_error() : std::nullopt;
}

void Viewer::set_error(std::optional<diagnostics::Diagnostic> error) {
    if (panels)
        panels->set_error(std::move(error));
}

void Viewer::drop(const std::vector<std::string>& paths) {
    set_error(find_error([&] { open_files(paths); }));
    frames_wanted = FRAMES_TO_SETTLE;
}

void Viewer::open_files(const std::vector<std::string>& paths) {
    std::vector<std::string> images;
    for (const std::string& path : paths) {
        const FileKind kind = get_file_kind(path);
        if (kind == FileKind::CONFIG)
            model.use_config(path);
        else if (kind == FileKind::CDL_LIBRARY)
            model.use_cdl_library(path);
        else
            images.push_back(path);
    }
    if (images.empty())
        return;
    model.open(images.front());
    model.add_images(images);
}

void Viewer::draw() {
    if (panels) {
        screen->begin_panels();
        hand.act();
        panels->begin();
    }
    const Viewport area = get_image_area();
    const int height = screen->get_size().height;
    glClearColor(0.05f, 0.05f, 0.05f, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    std::optional<PixelReadout> readout;
    const auto draw_image = [&] {
        renderer->draw(model, area, height);
        if (const std::optional<Position> at = get_cursor())
            readout = renderer->read_pixel(model, at->x, at->y);
    };
    if (!panels) {
        draw_image();
        return;
    }
    panels->set_drawing_error(find_error(draw_image));
    if (shows_panels)
        panels->show(model, *renderer, readout ? &*readout : nullptr);
    panels->steer(model, area);
    panels->end();
}

std::optional<Viewer::Position> Viewer::get_cursor() const {
    if (cursor || !panels)
        return cursor;
    const ImGuiIO& io = ImGui::GetIO();
    const float scale = Panels::get_pixel_scale();
    return io.WantCaptureMouse ? std::nullopt
                               : std::optional<Position>({io.MousePos.x * scale, io.MousePos.y * scale});
}

/// What is computed in the background is drawn when it is there.
void Viewer::draw_until_finished() {
    screen->begin_frame();
    do
        draw();
    while (renderer->finish_difference());
}

void Viewer::save_screenshot(const std::string& path) {
    draw_until_finished();
    write_screenshot(path, screen->get_size());
    screen->end_frame();
}

const Difference* Viewer::compare() {
    draw_until_finished();
    screen->end_frame();
    return renderer->get_difference();
}

} // namespace viewer
