#include <algorithm>
#include <cmath>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include "diagnostics/failure.h"
#include "files/diagnosis.h"
#include "files/input_file.h"
#include "tool/command.h"
#include "tool/console.h"
#include "tool/conversion_options.h"
#include "tool/source_space.h"
#include "tool/tool_session.h"
#include "viewer/script.h"
#include "viewer/script_values.h"
#include "viewer/viewer.h"

namespace tool {

namespace {

constexpr char EXAMPLES[] = R"(  colorio view render.exr
  colorio view a.exr b.png --config show.ocio --view "sRGB.Film"
  colorio view render.exr --exposure 1.5 --second-view "sRGB.Raw" --layout wipe
  colorio view render.exr --size 1920x1080 --screenshot render.png
  colorio view render.exr --script tour.txt

In the window: drag to pan, wheel to zoom, shift-drag to move the wipe line, drop files to open them.
Configs, LUTs, CDLs and images are reloaded when they change.

Commands of a script, one per line:
)";

constexpr int MAX_SIDE = 16384;
constexpr std::size_t MAX_SCRIPT_SIZE = 8 << 20;

viewer::Screen::Size parse_size(const std::string& text) {
    const std::size_t cross = std::min(text.find('x'), text.size());
    try {
        const double width = viewer::parse_number(text.substr(0, cross));
        const double height = viewer::parse_number(text.substr(std::min(cross + 1, text.size())));
        if (width >= 1 && height >= 1 && width <= MAX_SIDE && height <= MAX_SIDE)
            return {static_cast<int>(width), static_cast<int>(height)};
    } catch (const diagnostics::Failure&) {
        // reported below
    }
    throw UsageError(fmt::format("invalid size '{}'; example: 1280x720", text));
}

class ViewCommand : public Command {
public:
    explicit ViewCommand(Options& program)
        : Command(program, "view", "Show images through a view, on the GPU",
                  (EXAMPLES + viewer::Script::get_help()).c_str()) {
        options.add("images", paths, "images to show").required();
        add_session_options(options, session_options);
        options.add("--from,--space", space,
                    "color space of the first image (default: from its tags and file rules)");
        options.add("--cdl-library", cdl_library, "ASC CDL file whose color corrections are listed")
            .value("FILE");
        add_step_options(options, request);
        add_source_space_options(options, source_choice);
        options.add("--exposure", exposure, "exposure in stops, applied in scene-linear (default: 0)")
            .value("STOPS");
        options
            .add("--view", views[viewer::ViewModel::FIRST],
                 "view to use (default: the config's default view)")
            .value("DISPLAY.VIEW");
        options.add("--second-view", views[viewer::ViewModel::SECOND], "view to compare it with")
            .value("DISPLAY.VIEW");
        options.add("--layout", layout, "arrangement of the views (default: single)")
            .choices({"single", "wipe", "two", "difference"});
        options.add("--zoom", zoom, "screen pixels per image pixel, above 0 (default: fit the window)")
            .value("FACTOR")
            .positive();
        options.add("--size", size, "window size in pixels (default: 1280x800)").value("WIDTHxHEIGHT");
        options.add("--screenshot", screenshot, "image file to write, without opening a window")
            .value("FILE");
        options.add("--script", script_path, "file with commands, one per line").value("FILE");
        options.add_flag("--no-window", no_window, "run the script without opening a window");
    }

    ExitCode run(Console& console) override {
        const viewer::Screen::Size screen_size = parse_size(size);
        if (!std::isfinite(exposure))
            throw UsageError("--exposure takes a number of stops");
        if (!std::isfinite(zoom))
            throw UsageError("--zoom takes a positive number");
        take_steps(request);
        const std::vector<viewer::Script> scripts = read_script();
        workflow::LiveConfig live_config(make_options(session_options, console));
        report_notices(live_config.get_session(), session_options, console);
        viewer::ViewModel model(live_config);
        apply_options(model);
        if (std::optional<diagnostics::Diagnostic> error = model.get_watch_error()) {
            error->severity = diagnostics::Severity::WARNING;
            console.report(*error);
        }
        const bool headless = no_window || !screenshot.empty();
        const std::unique_ptr<viewer::Viewer> viewer = make_viewer(model, screen_size, headless);
        report_source(model, console);
        show(*viewer, scripts, console, headless);
        return EXIT_CODE_DONE;
    }

private:
    static std::unique_ptr<viewer::Viewer> make_viewer(viewer::ViewModel& model, viewer::Screen::Size size,
                                                       bool headless) {
        try {
            auto screen = headless ? viewer::make_offscreen(size) : viewer::make_window(size, "colorio");
            return std::make_unique<viewer::Viewer>(model, std::move(screen), !headless);
        } catch (const diagnostics::Failure& failure) {
            diagnostics::Diagnostic error = add_context("cannot show images", failure.get_diagnostics(),
                                                        diagnostics::Code::GPU_UNAVAILABLE);
            if (error.code == diagnostics::Code::DISPLAY_MISSING)
                error.hint = "use --screenshot, which needs no display";
            throw diagnostics::Failure(std::move(error));
        }
    }

    /// The script, or nothing without --script.
    std::vector<viewer::Script> read_script() const {
        if (script_path.empty()) {
            if (no_window && screenshot.empty())
                throw UsageError("--no-window needs --script or --screenshot");
            return {};
        }
        auto text = files::read_whole(script_path, MAX_SCRIPT_SIZE);
        if (!text)
            throw diagnostics::Failure(files::to_diagnostic(text.get_failure()));
        std::istringstream lines(*text);
        return {viewer::Script(lines, script_path)};
    }

    void report_source(const viewer::ViewModel& model, Console& console) const {
        if (!space.empty()) {
            console.report(
                diagnostics::make_note(diagnostics::Code::COLOR_SPACE_CHOSEN,
                                       fmt::format("{}: {} ({})", paths.front(),
                                                   model.get_settings(viewer::ViewModel::FIRST).input_space,
                                                   model.get_space_reason())));
            return;
        }
        report_source_space(paths.front(), model.get_file_space(), source_choice, console);
        if (source_choice.explains) {
            console.print(fmt::format("source:        {}, {}", model.get_file_space().color_space,
                                      model.get_space_reason()));
            print_source_steps(model.get_file_space(), console);
        }
    }

    /// The panel shows the CDL where it is one of those that it lists.
    void apply_steps(viewer::ViewModel& model) const {
        std::vector<workflow::ColorStep> steps = request.steps;
        const std::vector<std::string>& listed = model.get_live_config().get_cdls();
        if (!steps.empty() && steps.front().kind == workflow::ColorStep::CDL && !steps.front().is_inverse &&
            std::find(listed.begin(), listed.end(), steps.front().name) != listed.end()) {
            model.set_cdl(steps.front().name);
            steps.erase(steps.begin());
        }
        model.set_steps(std::move(steps));
    }

    void apply_options(viewer::ViewModel& model) const {
        model.add_images(paths);
        model.open(paths.front());
        if (!space.empty())
            model.set_input_space(space);
        if (!cdl_library.empty())
            model.use_cdl_library(cdl_library);
        apply_steps(model);
        for (const viewer::ViewModel::Side side : {viewer::ViewModel::FIRST, viewer::ViewModel::SECOND})
            if (!views[side].empty())
                model.set_view(side, views[side]);
        model.set_exposure(exposure);
        model.set_layout(viewer::parse_layout(layout));
    }

    /// Errors of files that became unusable after the start.
    static diagnostics::Diagnostics find_later_errors(const workflow::LiveConfig& live_config) {
        diagnostics::Diagnostics later;
        const diagnostics::Diagnostics& known = live_config.get_start_errors();
        for (const diagnostics::Diagnostic& error : live_config.get_source_errors())
            if (std::find(known.begin(), known.end(), error) == known.end())
                later.push_back(error);
        return later;
    }

    /// Throws diagnostics::Failure when a shown view cannot be converted: the image would be wrong.
    void save_screenshot(viewer::Viewer& viewer) const {
        viewer::ViewModel& model = viewer.get_model();
        model.get_conversion(viewer::ViewModel::FIRST);
        if (viewer::shows_both_views(model.get_layout()))
            model.get_conversion(viewer::ViewModel::SECOND);
        diagnostics::Diagnostics errors = model.get_shown_errors();
        if (errors.empty())
            errors = find_later_errors(model.get_live_config());
        if (!errors.empty())
            throw diagnostics::Failure(std::move(errors));
        viewer.save_screenshot(screenshot);
    }

    void show(viewer::Viewer& viewer, const std::vector<viewer::Script>& scripts, Console& console,
              bool headless) const {
        if (zoom > 0)
            viewer.get_camera().set_zoom(zoom);
        for (const viewer::Script& script : scripts)
            if (script.run(viewer, [&](const std::string& line) { console.print(line); }))
                return;
        if (!screenshot.empty())
            save_screenshot(viewer);
        while (!headless && !viewer.is_closed())
            viewer.run_frame();
    }

    SessionChoice session_options;
    std::vector<std::string> paths;
    std::string space;
    std::string cdl_library;
    ConversionChoice request; ///< Its steps alone.
    SourceSpaceChoice source_choice;
    float exposure = 0;
    std::string views[viewer::ViewModel::SIDE_COUNT];
    std::string layout = "single";
    double zoom = 0;
    std::string size = "1280x800";
    std::string screenshot;
    std::string script_path;
    bool no_window = false;
};

} // namespace

std::unique_ptr<Command> make_view_command(Options& program) {
    return std::make_unique<ViewCommand>(program);
}

} // namespace tool
