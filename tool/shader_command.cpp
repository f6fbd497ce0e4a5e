#include "tool/command.h"

#include <optional>
#include <string>

#include <fmt/format.h>

#include "gl/gl_error.h"
#include "tool/console.h"
#include "tool/conversion_options.h"
#include "tool/text_table.h"
#include "workflow/conversion.h"
#include "workflow/gpu_package.h"
#include "workflow/session.h"
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
    explicit ShaderCommand(CLI::App& program)
        : Command(program, "shader",
                  "Write a conversion as GLSL with its 3D table, and measure how far it is from the CPU",
                  EXAMPLES) {
        add_conversion_options(*options, request, "Colour space that the shader converts from");
        options->get_option("--from")->required();
        options->add_option("--glsl", dialect, "core (GLSL 3.30, the default) or legacy (GLSL 1.20)")
            ->check(CLI::IsMember({CORE, LEGACY}));
        options->add_option("-o,--output", folder, "Folder for the files; made when it is missing")
            ->required();
        add_session_options(*options, session_options);
    }

    ExitCode run(Console& console) override {
        check_conversion_request(request);
        ColorSession session(session_options, console);
        const ColorConversion conversion(session, request);
        const GlProfile profile = dialect == CORE ? GlProfile::CORE : GlProfile::LEGACY;
        const GpuConversion gpu = make_gpu_conversion(conversion, profile);
        console.print(fmt::format("{} to {}:", conversion.get_source(), conversion.get_target()));
        for (const std::string& path : write_gpu_conversion(gpu, folder))
            console.print("  " + path);
        return measure(gpu, profile, conversion, console);
    }

private:
    /// The files are whole without the measurement, so a machine without OpenGL is no failure.
    static ExitCode measure(const GpuConversion& gpu, GlProfile profile, const ColorConversion& conversion,
                            Console& console);
    static void print_differences(const std::vector<ShaderDifference>& differences, Console& console);

    SessionOptions session_options;
    ConversionRequest request;
    std::string dialect = CORE;
    std::string folder;
};

ExitCode ShaderCommand::measure(const GpuConversion& gpu, GlProfile profile,
                                const ColorConversion& conversion, Console& console) {
    std::optional<GlEvaluator> shader;
    try {
        shader.emplace(profile);
    } catch (const GlError& error) {
        console.warn(fmt::format("the shader was not compared with the CPU: {}", error.what()));
        return EXIT_CODE_DONE;
    }
    try {
        shader->load(gpu.text, gpu.table.data(), static_cast<int>(gpu.edge));
        console.print(fmt::format("Shader ({}) against CPU:", shader->get_renderer()));
        print_differences(compare_shader(*shader, conversion), console);
    } catch (const GlError& error) {
        throw CommandError(error.what());
    }
    return EXIT_CODE_DONE;
}

void ShaderCommand::print_differences(const std::vector<ShaderDifference>& differences, Console& console) {
    TextTable table(
        {"colours", "count", "largest difference", "mean difference", "largest at", "CPU", "shader"});
    for (const ShaderDifference& difference : differences)
        table.add_row({difference.grid, std::to_string(difference.points),
                       fmt::format("{:.3g}", difference.largest), fmt::format("{:.3g}", difference.mean),
                       format_color(difference.at), format_color(difference.cpu),
                       format_color(difference.shader)});
    table.print(console);
}

} // namespace

std::unique_ptr<Command> make_shader_command(CLI::App& program) {
    return std::make_unique<ShaderCommand>(program);
}

} // namespace tool
