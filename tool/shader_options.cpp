#include "tool/shader_command.h"

namespace tool {

namespace {

constexpr char EXAMPLES[] = R"(  colorio shader --from linear --view Tavelion.sRGB -o viewer
  colorio shader --from ACEScg --to ACEScct --config aces.ocio --glsl legacy -o .
  colorio shader --from ACEScg --cdl grades.ccc:shot_010 --view sRGB.Film --config show.ocio -o viewer)";

} // namespace

ShaderCommand::ShaderCommand(Options& program)
    : SessionCommand(program, "shader",
                     "Write a conversion as a GLSL function with 3D LUTs, and compare it with the CPU",
                     EXAMPLES) {
    add_conversion_options(options, request, "color space that the shader converts from");
    add_inverse_view_option(options, request);
    add_step_options(options, request);
    options.add("--glsl", dialect, "core: GLSL 3.30 (default), legacy: GLSL 1.20").choices({CORE, LEGACY});
    options.add("-o,--output", folder, "folder for the files; created if missing", "FOLDER").required();
    add_json_option();
    add_session_options();
}

const MakeCommand make_shader_command = make_command<ShaderCommand>;

} // namespace tool
