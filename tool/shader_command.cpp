#include "tool/command.h"

#include <optional>
#include <string>
#include <vector>

#include <fmt/format.h>

#include "diagnostics/failure.h"
#include "gl/gl_evaluator.h"
#include "tool/console.h"
#include "tool/conversion_options.h"
#include "tool/json.h"
#include "tool/text_table.h"
#include "tool/tool_session.h"
#include "workflow/conversion.h"
#include "workflow/gpu_package.h"
#include "workflow/shader_comparison.h"

namespace tool {

namespace {

constexpr char EXAMPLES[] = R"(  colorio shader --from linear --view Tavelion.sRGB -o viewer
  colorio shader --from ACEScg --to ACEScct --config aces.ocio --glsl legacy -o .
  colorio shader --from ACEScg --cdl grades.ccc:shot_010 --view sRGB.Film --config show.ocio -o viewer)";

constexpr char CORE[] = "core";
constexpr char LEGACY[] = "legacy";

std::string format_color(const float (&rgb)[3]) {
    return fmt::format("{:.5g} {:.5g} {:.5g}", rgb[0], rgb[1], rgb[2]);
}

Json color_to_json(const float (&rgb)[3]) {
    return Json(std::vector<Json>{rgb[0], rgb[1], rgb[2]});
}

class ShaderCommand : public Command {
public:
    explicit ShaderCommand(Options& program)
        : Command(program, "shader",
                  "Write a conversion as a GLSL function with 3D LUTs, and compare it with the CPU",
                  EXAMPLES) {
        add_conversion_options(options, request, "color space that the shader converts from");
        add_inverse_view_option(options, request);
        add_step_options(options, request);
        options.add("--glsl", dialect, "core: GLSL 3.30 (default), legacy: GLSL 1.20")
            .choices({CORE, LEGACY});
        options.add("-o,--output", folder, "folder for the files; created if missing")
            .value("FOLDER")
            .required();
        options.add_flag("--json", as_json, "print JSON");
        add_session_options(options, session_options);
    }

    ExitCode run(Console& console) override {
        check_conversion(request);
        if (request.from.empty() && request.inverse_view.empty())
            throw UsageError("--from or --inverse-view is required");
        const ToolSession session(session_options, console);
        const workflow::Conversion conversion(session, request);
        console.report(conversion.get_notes());
        if (conversion.is_identity())
            diagnostics::fail(
                diagnostics::Code::SHADER_IMPOSSIBLE,
                fmt::format("cannot make a shader from '{}' to '{}': source and destination are "
                            "the same",
                            conversion.get_source(), conversion.get_destination()));
        const gl::GlProfile profile = dialect == CORE ? gl::GlProfile::CORE : gl::GlProfile::LEGACY;
        const workflow::GpuConversion gpu = workflow::make_gpu_conversion(conversion, profile);
        const std::vector<std::string> files = workflow::write_gpu_conversion(gpu, folder);
        if (!as_json)
            print_files(conversion, files, console);
        const Comparison comparison = compare(gpu, profile, conversion, console);
        if (as_json)
            console.print_text(to_json(conversion, files, comparison).format());
        else if (!comparison.renderer.empty())
            print(comparison, console);
        return EXIT_CODE_DONE;
    }

private:
    /// The shader against the CPU; without OpenGL nothing.
    struct Comparison {
        std::string renderer;
        std::vector<workflow::ColorDifference> differences;
    };

    /// Without OpenGL only warns: the written files do not depend on the comparison.
    static Comparison compare(const workflow::GpuConversion& gpu, gl::GlProfile profile,
                              const workflow::Conversion& conversion, Console& console);
    static void print_files(const workflow::Conversion& conversion, const std::vector<std::string>& files,
                            Console& console);
    static void print(const Comparison& comparison, Console& console);
    Json to_json(const workflow::Conversion& conversion, const std::vector<std::string>& files,
                 const Comparison& comparison) const;

    SessionChoice session_options;
    ConversionChoice request;
    std::string dialect = CORE;
    std::string folder;
    bool as_json = false;
};

ShaderCommand::Comparison ShaderCommand::compare(const workflow::GpuConversion& gpu, gl::GlProfile profile,
                                                 const workflow::Conversion& conversion, Console& console) {
    std::optional<gl::GlEvaluator> evaluator;
    try {
        evaluator.emplace(profile);
    } catch (const diagnostics::Failure& failure) {
        diagnostics::Diagnostic warning =
            add_context("cannot compare the shader with the CPU", failure.get_diagnostics(),
                        diagnostics::Code::GPU_UNAVAILABLE);
        warning.severity = diagnostics::Severity::WARNING;
        console.report(warning);
        return {};
    }
    return {evaluator->get_renderer(), workflow::compare_shader(*evaluator, gpu, conversion)};
}

void ShaderCommand::print_files(const workflow::Conversion& conversion, const std::vector<std::string>& files,
                                Console& console) {
    console.print(fmt::format("{} to {}:", conversion.get_source(), conversion.get_destination()));
    for (const std::string& path : files)
        console.print("  " + path);
}

void ShaderCommand::print(const Comparison& comparison, Console& console) {
    console.print(fmt::format("Shader ({}) against CPU:", comparison.renderer));
    TextTable table(
        {"colors", "count", "largest difference", "mean difference", "largest at", "CPU", "shader"});
    for (const workflow::ColorDifference& difference : comparison.differences)
        table.add_row({difference.colors, std::to_string(difference.points),
                       fmt::format("{:.3g}", difference.largest), fmt::format("{:.3g}", difference.mean),
                       format_color(difference.at), format_color(difference.expected),
                       format_color(difference.actual)});
    table.print(console);
    for (const workflow::ColorDifference& difference : comparison.differences)
        if (difference.incomparable > 0)
            console.print(fmt::format("{}: {}", difference.colors, describe_incomparable(difference)));
}

Json ShaderCommand::to_json(const workflow::Conversion& conversion, const std::vector<std::string>& files,
                            const Comparison& comparison) const {
    Json differences = Json::array();
    for (const workflow::ColorDifference& difference : comparison.differences)
        differences.push({{"colors", difference.colors},
                          {"count", difference.points},
                          {"largest", difference.largest},
                          {"mean", difference.mean},
                          {"incomparable", difference.incomparable},
                          {"at", color_to_json(difference.at)},
                          {"cpu", color_to_json(difference.expected)},
                          {"shader", color_to_json(difference.actual)}});
    return {{"source", conversion.get_source()},
            {"destination", conversion.get_destination()},
            {"glsl", dialect},
            {"files", files},
            {"renderer", comparison.renderer.empty() ? Json() : Json(comparison.renderer)},
            {"differences", differences}};
}

} // namespace

std::unique_ptr<Command> make_shader_command(Options& program) {
    return std::make_unique<ShaderCommand>(program);
}

} // namespace tool
