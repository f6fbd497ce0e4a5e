#include <cmath>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include "gl/gl_error.h"
#include "tool/command.h"
#include "tool/console.h"
#include "tool/exit_code.h"
#include "viewer/picture_painter.h"
#include "viewer/script.h"
#include "viewer/viewer.h"
#include "workflow/session.h"

namespace tool {

namespace {

constexpr char EXAMPLES[] = R"(  colorio view render.exr
  colorio view a.exr b.png --config show.ocio --view "sRGB.Film"
  colorio view render.exr --exposure 1.5 --second-view "sRGB.Raw" --layout wipe
  colorio view render.exr --size 1920x1080 --screenshot render.png
  colorio view render.exr --script tour.txt

In the window: drag moves, the wheel zooms, shift and drag moves the line of the wipe, files can be dropped.
Edited configurations, LUTs, CDLs and pictures are read again at once.

Commands of a script, one a line:
)";

constexpr int MAX_SIDE = 16384;

Screen::Size parse_size(const std::string& text) {
    const std::size_t cross = std::min(text.find('x'), text.size());
    try {
        const double width = parse_number(text.substr(0, cross));
        const double height = parse_number(text.substr(std::min(cross + 1, text.size())));
        if (width >= 1 && height >= 1 && width <= MAX_SIDE && height <= MAX_SIDE)
            return {static_cast<int>(width), static_cast<int>(height)};
    } catch (const CommandError&) {
        // told below
    }
    throw UsageError(fmt::format("'{}' is no size; write it as 1280x720", text));
}

class ViewCommand : public Command {
public:
    explicit ViewCommand(CLI::App& program)
        : Command(program, "view", "Look at pictures through a view, on the GPU",
                  (EXAMPLES + Script::get_help()).c_str()) {
        options->add_option("images", paths, "Pictures to show")->required();
        add_session_options(*options, session_options);
        options->add_option("--space", space, "Colour space of the first picture");
        options->add_option("--cdl-library", cdl_library, "ASC CDL file whose corrections are listed");
        options->add_option("--cdl", cdl, "Colour decision list to apply");
        options->add_option("--exposure", exposure, "Stops of exposure, in scene-linear light");
        options->add_option("--view", views[ViewModel::FIRST], "View to show it through, as DISPLAY.VIEW");
        options->add_option("--second-view", views[ViewModel::SECOND], "View to compare it with");
        options->add_option("--layout", layout, "single, wipe, two or difference");
        options->add_option("--zoom", zoom, "Pixels of the screen per pixel of the picture; fits by default")
            ->check(check_positive_number);
        options->add_option("--size", size, "Size of the window, 1280x800 by default");
        options->add_option("--screenshot", screenshot, "Write what is shown to this file, without a window");
        options->add_option("--script", script_path, "Do what the lines of this file say");
        options->add_flag("--no-window", no_window, "Run the script without a window");
    }

    ExitCode run(Console& console) override {
        const Screen::Size screen_size = parse_size(size);
        if (!std::isfinite(exposure))
            throw UsageError("--exposure takes a number of stops");
        const std::vector<Script> scripts = read_script();
        ColorHost host(session_options, console);
        ViewModel model(host);
        const bool headless = no_window || !screenshot.empty();
        try {
            auto screen = headless ? make_offscreen(screen_size) : make_window(screen_size, "colorio");
            model.set_max_side(get_max_side());
            apply_options(model);
            if (const std::string fault = model.get_watch_fault(); !fault.empty())
                console.warn(fmt::format("files that change are not shown again: {}", fault));
            Viewer viewer(model, std::move(screen), !headless);
            console.note(fmt::format("{}: {} ({})", paths.front(),
                                     model.get_settings(ViewModel::FIRST).input_space,
                                     model.get_space_reason()));
            show(viewer, scripts, console, headless);
        } catch (const GlError& error) {
            throw CommandError(fmt::format("cannot show pictures: {}", error.what()));
        }
        return EXIT_CODE_DONE;
    }

private:
    /// The script, if there is one.
    std::vector<Script> read_script() const {
        if (script_path.empty()) {
            if (no_window && screenshot.empty())
                throw UsageError("--no-window needs --script or --screenshot");
            return {};
        }
        std::error_code error;
        std::ifstream file(script_path);
        if (!file || std::filesystem::is_directory(script_path, error))
            throw CommandError(fmt::format("cannot read the script '{}'", script_path));
        return {Script(file, script_path)};
    }

    void apply_options(ViewModel& model) const {
        model.add_pictures(paths);
        model.open(paths.front());
        if (!space.empty())
            model.set_input_space(space);
        if (!cdl_library.empty())
            model.use_cdl_library(cdl_library);
        if (!cdl.empty())
            model.set_cdl(cdl);
        for (const ViewModel::Side side : {ViewModel::FIRST, ViewModel::SECOND})
            if (!views[side].empty())
                model.set_view(side, views[side]);
        model.set_exposure(exposure);
        model.set_layout(parse_layout(layout));
    }

    /// A picture of what cannot be shown as asked for would be a wrong one.
    void save_screenshot(Viewer& viewer) const {
        ViewModel& model = viewer.get_model();
        model.get_chain(ViewModel::FIRST);
        if (shows_both_views(model.get_layout()))
            model.get_chain(ViewModel::SECOND);
        for (const std::string& fault : model.get_faults())
            throw CommandError(fault);
        viewer.save_screenshot(screenshot);
    }

    void show(Viewer& viewer, const std::vector<Script>& scripts, Console& console, bool headless) const {
        if (zoom > 0)
            viewer.get_camera().set_zoom(zoom);
        for (const Script& script : scripts)
            if (script.run(viewer, console))
                return;
        if (!screenshot.empty())
            save_screenshot(viewer);
        while (!headless && !viewer.is_closed())
            viewer.run_frame();
    }

    SessionOptions session_options;
    std::vector<std::string> paths;
    std::string space;
    std::string cdl_library;
    std::string cdl;
    float exposure = 0;
    std::string views[ViewModel::SIDE_COUNT];
    std::string layout = "single";
    double zoom = 0;
    std::string size = "1280x800";
    std::string screenshot;
    std::string script_path;
    bool no_window = false;
};

} // namespace

std::unique_ptr<Command> make_view_command(CLI::App& program) {
    return std::make_unique<ViewCommand>(program);
}

} // namespace tool
