#include "viewer/view_renderer.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <utility>

#include <epoxy/gl.h>

namespace viewer {

namespace {

/// The line between two views, in pixels.
constexpr int LINE_WIDTH = 2;

bool is_ready(const std::future<Difference>& comparison) {
    return comparison.valid() && comparison.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
}

/// The part of a viewport from one of its columns to another.
Viewport cut_columns(const Viewport& viewport, int from, int to) {
    return {viewport.x + from, viewport.y, std::max(0, to - from), viewport.height};
}

void draw_line(const Viewport& behind, int framebuffer_height) {
    glEnable(GL_SCISSOR_TEST);
    glScissor(behind.x - LINE_WIDTH / 2, framebuffer_height - behind.y - behind.height, LINE_WIDTH,
              behind.height);
    glClearColor(0.8f, 0.8f, 0.8f, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    glDisable(GL_SCISSOR_TEST);
}

} // namespace

bool ViewRenderer::aim(ViewModel& model, const Viewport& area) {
    panes.clear();
    const std::shared_ptr<const Image>& image = model.get_image();
    if (!image || area.width <= 0 || area.height <= 0)
        return false;
    arrange(model, area);
    model.get_camera().look_at(panes.front().viewport.width, area.height, image->width, image->height);
    return true;
}

void ViewRenderer::draw(ViewModel& model, const Viewport& area, int framebuffer_height) {
    if (!aim(model, area))
        return;
    if (model.get_layout() == Layout::DIFFERENCE) {
        draw_difference(model, area, framebuffer_height);
        return;
    }
    const Placement placement = model.get_camera().get_placement();
    for (const Pane& pane : panes)
        painter.draw(get_subject(model, pane.side), pane.viewport, pane.clip, placement, framebuffer_height);
    if (panes.size() > 1)
        draw_line(panes.back().clip, framebuffer_height);
}

void ViewRenderer::arrange(const ViewModel& model, const Viewport& area) {
    if (model.get_layout() == Layout::SIDE_BY_SIDE) {
        const Viewport left = cut_columns(area, 0, area.width / 2);
        const Viewport right = cut_columns(area, area.width - area.width / 2, area.width);
        panes = {{left, left, ViewModel::FIRST}, {right, right, ViewModel::SECOND}};
    } else if (model.get_layout() == Layout::WIPE) {
        const auto line = static_cast<int>(std::lround(area.width * model.get_wipe()));
        panes = {{area, cut_columns(area, 0, line), ViewModel::FIRST},
                 {area, cut_columns(area, line, area.width), ViewModel::SECOND}};
    } else {
        panes = {{area, area, ViewModel::FIRST}};
    }
}

ImagePainter::Subject ViewRenderer::get_subject(ViewModel& model, ViewModel::Side side) {
    return {model.get_image(), model.get_conversion(side), model.get_settings(side).exposure};
}

/// Until the comparison is finished the image itself is shown.
void ViewRenderer::draw_difference(ViewModel& model, const Viewport& area, int framebuffer_height) {
    ImagePainter::Subject shown = get_subject(model, ViewModel::FIRST);
    update_difference(shown);
    if (difference)
        shown = {difference->image, nullptr, std::log2(model.get_difference_scale())};
    painter.draw(shown, area, area, model.get_camera().get_placement(), framebuffer_height);
}

void ViewRenderer::update_difference(const ImagePainter::Subject& wanted) {
    if (is_ready(comparison))
        difference = comparison.get();
    if (compared == wanted)
        return;
    difference.reset();
    if (comparison.valid())
        return;
    compared = wanted;
    if (!wanted.conversion)
        return;
    comparison = start_comparison(wanted.image, wanted.conversion, wanted.exposure,
                                  painter.convert(wanted, {0, 0, wanted.image->width, wanted.image->height}));
}

bool ViewRenderer::has_news() const {
    return is_ready(comparison);
}

bool ViewRenderer::finish_difference() {
    if (!comparison.valid())
        return false;
    comparison.wait();
    return true;
}

std::optional<PixelReadout> ViewRenderer::read_pixel(ViewModel& model, double x, double y) {
    const auto pane = std::find_if(panes.begin(), panes.end(),
                                   [&](const Pane& candidate) { return candidate.clip.contains(x, y); });
    if (pane == panes.end())
        return {};
    const ImagePainter::Subject subject = get_subject(model, pane->side);
    const Placement placement = model.get_camera().get_placement();
    PixelReadout readout{};
    readout.x = static_cast<int>(std::floor(placement.to_image_x(x - pane->viewport.x)));
    readout.y = static_cast<int>(std::floor(placement.to_image_y(y - pane->viewport.y)));
    if (!Viewport{0, 0, subject.image->width, subject.image->height}.contains(readout.x, readout.y))
        return {};
    std::copy_n(subject.image->at(readout.x, readout.y), 4, readout.before);
    std::copy_n(readout.before, 4, readout.cpu);
    if (subject.conversion)
        subject.conversion->apply(readout.cpu, 1, 1, subject.exposure);
    const std::vector<float> gpu = painter.convert(subject, {readout.x, readout.y, 1, 1});
    std::copy_n(gpu.begin(), 4, readout.gpu);
    return readout;
}

} // namespace viewer
