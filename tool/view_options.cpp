#include "tool/view_command.h"

#include "viewer/script_help.h"

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

} // namespace

ViewCommand::ViewCommand(Options& program)
    : SessionCommand(program, "view", "Show images through a view, on the GPU",
                     EXAMPLES + viewer::get_script_help()) {
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

const MakeCommand make_view_command = make_command<ViewCommand>;

} // namespace tool
