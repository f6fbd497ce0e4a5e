#include "tool/explain_command.h"

namespace tool {

namespace {

constexpr char EXAMPLES[] = R"(  colorio explain sRGB linear
  colorio explain linear --view Tavelion.sRGB --pixel 0.18,0.18,0.18
  colorio explain ACEScg ACEScct --config aces.ocio --cdl grades.ccc:shot_010 --json
  colorio explain --image scan.dpx linear --why

With COLORIO_FAST_PATH=0 in the environment everything is converted by OpenColorIO.)";

} // namespace

ExplainCommand::ExplainCommand(Options& program)
    : SessionCommand(program, "explain",
                     "Show the operations of a conversion, and the values of a pixel after each of them",
                     EXAMPLES) {
    options.add("source", request.from, "source color space; omit it with --image or --inverse-view");
    options.add("destination", request.to, "color space of the result, unless --view is given");
    options.add("--image", image, "image that determines the source color space", "FILE");
    add_view_options(options, request);
    add_inverse_view_option(options, request);
    add_step_options(options, request);
    add_source_space_options(options, source_choice);
    options.add("--pixel", pixel_text, "pixel to show after each operation", "R,G,B[,A]");
    add_session_options();
    add_json_option();
}

const MakeCommand make_explain_command = make_command<ExplainCommand>;

} // namespace tool
