#include "tool/command.h"

#include <string>

#include <fmt/format.h>

#include "tool/console.h"
#include "tool/conversion_options.h"
#include "tool/gl_threads.h"
#include "tool/source_space.h"
#include "viewer/run.h"
#include "viewer/script.h"

namespace tool {

namespace {

constexpr char EXAMPLES[] = R"(  colorio view render.exr
  colorio view a.exr b.png --config show.ocio --view "sRGB.Film"
  colorio view render.exr --exposure 1.5 --second-view "sRGB.Raw" --layout wipe
  colorio view graded.png --inverse-view "sRGB.Film" --view "P3.Film" --config show.ocio
  colorio view render.exr --size 1920x1080 --screenshot render.png
  colorio view render.exr --script tour.txt

In the window: drag to pan, wheel to zoom, shift-drag to move the wipe line, drop files to open them.
Configs, LUTs, CDLs and images are reloaded when they change.

Commands of a script, one per line:
)";

class ViewCommand : public SessionCommand {
public:
    explicit ViewCommand(Options& program);
    ExitCode run(Console& console) override;

private:
    void check_views() const;
    void report_source(const viewer::ViewModel& model, Console& console) const;

    ConversionChoice request; ///< Its steps alone.
    SourceSpaceChoice source_choice;
    viewer::RunOptions wanted;
    bool no_window = false;
};

ViewCommand::ViewCommand(Options& program)
    : SessionCommand(program, "view", "Show images through a view, on the GPU",
                     EXAMPLES + viewer::Script::get_help()) {
    options.add("images", wanted.images, "images to show").required();
    add_session_options();
    options.add("--from,--space", wanted.space,
                "color space of the first image (default: from its tags and file rules)");
    options.add("--inverse-view", wanted.inverse_view,
                "view that the first image was made for; it is inverted to scene-linear", "DISPLAY.VIEW");
    options.add("--cdl-library", wanted.cdl_library, "ASC CDL file whose color corrections are listed",
                "FILE");
    add_step_options(options, request);
    add_source_space_options(options, source_choice);
    options.add("--exposure", wanted.exposure, "exposure in stops, applied in scene-linear (default: 0)",
                "STOPS");
    options.add("--display", wanted.display, "display of the view; needs --view");
    options.add("--view", wanted.views[viewer::ViewModel::FIRST],
                "view to use: VIEW of --display, or DISPLAY.VIEW (default: the config's default view)");
    options.add("--second-view", wanted.views[viewer::ViewModel::SECOND], "view to compare it with",
                "DISPLAY.VIEW");
    options.add("--layout", wanted.layout, "arrangement of the views (default: single)")
        .choices({"single", "wipe", "two", "difference"});
    options
        .add("--zoom", wanted.zoom, "screen pixels per image pixel, above 0 (default: fit the window)",
             "FACTOR")
        .positive();
    options.add("--size", wanted.size, "window size in pixels (default: 1280x800)", "WIDTHxHEIGHT");
    options.add("--screenshot", wanted.screenshot, "image file to write, without opening a window", "FILE");
    options.add("--script", wanted.script, "file with commands, one per line", "FILE");
    options.add_flag("--no-window", no_window, "run the script without opening a window");
}

ExitCode ViewCommand::run(Console& console) {
    viewer::parse_size(wanted.size); // before the config is loaded
    take_steps(request);
    check_views();
    if (no_window && wanted.script.empty() && wanted.screenshot.empty())
        throw UsageError("--no-window needs --script or --screenshot");
    wanted.steps = request.steps;
    wanted.has_window = !no_window;
    limit_gl_threads();
    workflow::LiveConfig live_config(make_options(session_options, console));
    report_notices(live_config.get_session(), session_options, console);
    viewer::run(live_config, wanted,
                {[&](const std::string& line) { console.print(line); },
                 [&](const diagnostics::Diagnostic& warning) { console.report(warning); },
                 [&](const viewer::ViewModel& model) { report_source(model, console); }});
    return EXIT_CODE_DONE;
}

void ViewCommand::check_views() const {
    if (!wanted.space.empty() && !wanted.inverse_view.empty())
        throw UsageError("--from and --inverse-view cannot be combined");
    if (!wanted.display.empty() && wanted.views[viewer::ViewModel::FIRST].empty())
        throw UsageError("--display needs --view");
}

void ViewCommand::report_source(const viewer::ViewModel& model, Console& console) const {
    console.release();
    const std::string& path = wanted.images.front();
    const viewer::ColorSettings settings = model.get_settings(viewer::ViewModel::FIRST);
    if (!wanted.space.empty() || !wanted.inverse_view.empty()) {
        console.report(diagnostics::make_note(
            diagnostics::Code::COLOR_SPACE_CHOSEN,
            fmt::format("{}: {} ({})", path, settings.describe_source(), model.get_space_reason())));
        if (source_choice.explains)
            print_decision("source",
                           fmt::format("{}, from {}", settings.describe_source(),
                                       wanted.inverse_view.empty() ? "--from" : "--inverse-view"),
                           console);
        return;
    }
    const workflow::FileSpace& found = model.get_file_space();
    report_source_space(path, found, source_choice, console);
    if (!source_choice.explains)
        return;
    print_decision("source", fmt::format("{}, {}", found.color_space, model.get_space_reason()), console);
    print_source_steps(found, console);
}

} // namespace

const MakeCommand make_view_command = make_command<ViewCommand>;

} // namespace tool
