#include "tool/command.h"

#include <optional>
#include <string>

#include <fmt/format.h>

#include "gl/gl_error.h"
#include "tool/console.h"
#include "tool/conversion_options.h"
#include "tool/text_table.h"
#include "tool/tool_session.h"
#include "workflow/conversion.h"
#include "workflow/gpu_package.h"
#include "workflow/shader_comparison.h"

namespace tool {

namespace {

constexpr char EXAMPLES[] = R"(  colorio shader --from linear --view Tavelion.sRGB -o viewer
  colorio shader --from ACEScg --to ACEScct --config aces.ocio --glsl legacy -o .)";

constexpr char CORE[] = "core";
constexpr char LEGACY[] = "legacy";

std::string format_color(const float (&rgb)[3]) {
    return fmt::format("{:.5g} {:.5g} {:.5g}", rgb[0], rgb[1], rgb[2]);
}

class ShaderCommand : public Command {
public:
    explicit ShaderCommand(Options& program)
        : Command(program, "shader",
                  "Write a conversion as a GLSL function with a 3D LUT, and compare it with the CPU",
                  EXAMPLES) {
        add_conversion_options(options, request, "color space that the shader converts from");
        options.get("--from").required();
        options.add("--glsl", dialect, "core: GLSL 3.30 (default), legacy: GLSL 1.20")
            .choices({CORE, LEGACY});
        options.add("-o,--output", folder, "folder for the files; created if missing")
            .value("FOLDER")
            .required();
        add_session_options(options, session_options);
    }

    ExitCode run(Console& console) override {
        check_conversion(request);
        const ToolSession session(session_options, console);
        const workflow::Conversion conversion(session, request);
        console.report(conversion.get_notes());
        const gl::GlProfile profile = dialect == CORE ? gl::GlProfile::CORE : gl::GlProfile::LEGACY;
        const workflow::GpuConversion gpu = workflow::make_gpu_conversion(conversion, profile);
        console.print(fmt::format("{} to {}:", conversion.get_source(), conversion.get_destination()));
        for (const std::string& path : workflow::write_gpu_conversion(gpu, folder))
            console.print("  " + path);
        return measure(gpu, profile, conversion, console);
    }

private:
    /// Without OpenGL only warns: the written files do not depend on the comparison.
    static ExitCode measure(const workflow::GpuConversion& gpu, gl::GlProfile profile,
                            const workflow::Conversion& conversion, Console& console);
    static void print_differences(const std::vector<workflow::ColorDifference>& differences,
                                  Console& console);

    SessionChoice session_options;
    ConversionChoice request;
    std::string dialect = CORE;
    std::string folder;
};

ExitCode ShaderCommand::measure(const workflow::GpuConversion& gpu, gl::GlProfile profile,
                                const workflow::Conversion& conversion, Console& console) {
    std::optional<gl::GlEvaluator> shader;
    try {
        shader.emplace(profile);
    } catch (const gl::GlError& error) {
        console.report(diagnostics::make_warning(
            diagnostics::Code::GPU_UNAVAILABLE,
            fmt::format("cannot compare the shader with the CPU: {}", error.what())));
        return EXIT_CODE_DONE;
    }
    try {
        shader->load(gpu.text, gpu.lut.data(), static_cast<int>(gpu.edge));
        console.print(fmt::format("Shader ({}) against CPU:", shader->get_renderer()));
        print_differences(workflow::compare_shader(*shader, conversion), console);
    } catch (const gl::GlError& error) {
        diagnostics::fail(diagnostics::Code::GPU_UNAVAILABLE, error.what());
    }
    return EXIT_CODE_DONE;
}

void ShaderCommand::print_differences(const std::vector<workflow::ColorDifference>& differences,
                                      Console& console) {
    TextTable table(
        {"colors", "count", "largest difference", "mean difference", "largest at", "CPU", "shader"});
    for (const workflow::ColorDifference& difference : differences)
        table.add_row({difference.colors, std::to_string(difference.points),
                       fmt::format("{:.3g}", difference.largest), fmt::format("{:.3g}", difference.mean),
                       format_color(difference.at), format_color(difference.expected),
                       format_color(difference.actual)});
    table.print(console);
}

} // namespace

std::unique_ptr<Command> make_shader_command(Options& program) {
    return std::make_unique<ShaderCommand>(program);
}

} // namespace tool
