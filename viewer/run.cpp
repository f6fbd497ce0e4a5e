#include "viewer/run.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <sstream>
#include <utility>

#include <fmt/format.h>

#include "files/diagnosis.h"
#include "files/input_file.h"
#include "viewer/script.h"
#include "viewer/script_values.h"
#include "viewer/viewer.h"

namespace viewer {

namespace {

using diagnostics::Code;

constexpr int MAX_SIDE = 16384;
constexpr std::size_t MAX_SCRIPT_SIZE = 8 << 20;

/// Nothing without a path.
std::optional<Script> read_script(const std::string& path) {
    if (path.empty())
        return std::nullopt;
    auto text = files::read_whole(path, MAX_SCRIPT_SIZE);
    if (!text)
        throw diagnostics::Failure(files::to_diagnostic(text.get_failure()));
    std::istringstream lines(*text);
    return Script(lines, path);
}

/// The panel shows the CDL where it is one of those that it lists.
void apply_steps(std::vector<workflow::ColorStep> steps, ViewModel& model) {
    const std::vector<std::string>& listed = model.get_live_config().get_cdls();
    if (!steps.empty() && steps.front().kind == workflow::ColorStep::CDL && !steps.front().is_inverse &&
        std::find(listed.begin(), listed.end(), steps.front().name) != listed.end()) {
        model.set_cdl(steps.front().name);
        steps.erase(steps.begin());
    }
    model.set_steps(std::move(steps));
}

void apply_options(const RunOptions& options, ViewModel& model) {
    model.add_images(options.images);
    model.open(options.images.front());
    if (!options.space.empty())
        model.set_input_space(options.space);
    if (!options.inverse_view.empty())
        model.set_inverse_view(options.inverse_view);
    if (!options.cdl_library.empty())
        model.use_cdl_library(options.cdl_library);
    apply_steps(options.steps, model);
    for (const ViewModel::Side side : {ViewModel::FIRST, ViewModel::SECOND})
        if (!options.views[side].empty())
            model.set_view(side, options.views[side], side == ViewModel::FIRST ? options.display : "");
    model.set_exposure(options.exposure);
    model.set_layout(parse_layout(options.layout));
}

/// Errors of files that became unusable after the start.
diagnostics::Diagnostics find_later_errors(const workflow::LiveConfig& live_config) {
    diagnostics::Diagnostics later;
    const diagnostics::Diagnostics& known = live_config.get_start_errors();
    for (const diagnostics::Diagnostic& error : live_config.get_source_errors())
        if (std::find(known.begin(), known.end(), error) == known.end())
            later.push_back(error);
    return later;
}

/// Throws diagnostics::Failure when a shown view cannot be converted: the image would be wrong.
void save_screenshot(Viewer& viewer, const std::string& path) {
    ViewModel& model = viewer.get_model();
    model.get_conversion(ViewModel::FIRST);
    if (shows_both_views(model.get_layout()))
        model.get_conversion(ViewModel::SECOND);
    diagnostics::Diagnostics errors = model.get_shown_errors();
    if (errors.empty())
        errors = find_later_errors(model.get_live_config());
    if (!errors.empty())
        throw diagnostics::Failure(std::move(errors));
    viewer.save_screenshot(path);
}

void show(Viewer& viewer, const std::optional<Script>& script, const RunOptions& options,
          const RunOutput& output, bool has_window) {
    if (options.zoom > 0)
        viewer.get_camera().set_zoom(options.zoom);
    if (script && script->run(viewer, output.print))
        return;
    if (!options.screenshot.empty())
        save_screenshot(viewer, options.screenshot);
    while (has_window && !viewer.is_closed())
        viewer.run_frame();
}

std::unique_ptr<Viewer> make_viewer(ViewModel& model, Screen::Size size, bool has_window) {
    try {
        auto screen = has_window ? make_window(size, "colorio") : make_offscreen(size);
        return std::make_unique<Viewer>(model, std::move(screen), has_window);
    } catch (const diagnostics::Failure& failure) {
        throw diagnostics::Failure(
            add_context("cannot show images", failure.get_diagnostics(), Code::GPU_UNAVAILABLE));
    }
}

} // namespace

Screen::Size parse_size(const std::string& text) {
    const std::size_t cross = std::min(text.find('x'), text.size());
    try {
        const double width = parse_number(text.substr(0, cross));
        const double height = parse_number(text.substr(std::min(cross + 1, text.size())));
        if (width >= 1 && height >= 1 && width <= MAX_SIDE && height <= MAX_SIDE)
            return {static_cast<int>(width), static_cast<int>(height)};
    } catch (const diagnostics::Failure&) {
        // reported below
    }
    diagnostics::fail(Code::USAGE, fmt::format("invalid size '{}'; example: 1280x720", text));
}

void run(workflow::LiveConfig& live_config, const RunOptions& options, const RunOutput& output) {
    const Screen::Size size = parse_size(options.size);
    const std::optional<Script> script = read_script(options.script);
    ViewModel model(live_config);
    apply_options(options, model);
    if (std::optional<diagnostics::Diagnostic> error = model.get_watch_error()) {
        error->severity = diagnostics::Severity::WARNING;
        output.warn(*error);
    }
    const bool has_window = options.has_window && options.screenshot.empty();
    const std::unique_ptr<Viewer> viewer = make_viewer(model, size, has_window);
    output.started(model);
    show(*viewer, script, options, output, has_window);
}

} // namespace viewer
