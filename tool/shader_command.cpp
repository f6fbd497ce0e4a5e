#include "tool/shader_command.h"

#include <fmt/format.h>

#include "diagnostics/failure.h"
#include "tool/console.h"
#include "tool/gl_threads.h"
#include "tool/row_model.h"
#include "workflow/gpu_package.h"
#include "workflow/shader_comparison.h"

namespace tool {

namespace {

using workflow::ColorDifference;

Cell make_color(const float (&rgb)[3]) {
    return {workflow::format_color(rgb), Json(std::vector<Json>{rgb[0], rgb[1], rgb[2]})};
}

Cell make_size(double difference) {
    return {fmt::format("{:.3g}", difference), difference};
}

RowModel<ColorDifference> make_rows() {
    RowModel<ColorDifference> rows;
    return rows.add("colors", "colors", &ColorDifference::colors)
        .add("count", "count", &ColorDifference::points)
        .add("largest difference", "largest", [](const auto& row) { return make_size(row.largest); })
        .add("mean difference", "mean", [](const auto& row) { return make_size(row.mean); })
        .add(nullptr, "incomparable", &ColorDifference::incomparable)
        .add("largest at", "at", [](const auto& row) { return make_color(row.at); })
        .add("CPU", "cpu", [](const auto& row) { return make_color(row.expected); })
        .add("shader", "shader", [](const auto& row) { return make_color(row.actual); });
}

void print_files(const workflow::Conversion& conversion, const std::vector<std::string>& files,
                 Console& console) {
    console.print(fmt::format("{} to {}:", conversion.get_source(), conversion.get_destination()));
    for (const std::string& path : files)
        console.print("  " + path);
}

} // namespace

ExitCode ShaderCommand::run(Console& console) {
    check_conversion(request);
    if (request.from.empty() && request.inverse_view.empty())
        throw UsageError("--from or --inverse-view is required");
    limit_gl_threads();
    const ToolSession session(session_options, console);
    const workflow::Conversion conversion(session, request);
    console.report(conversion.get_notes());
    if (conversion.is_identity())
        diagnostics::fail(diagnostics::Code::SHADER_IMPOSSIBLE,
                          fmt::format("cannot make a shader from '{}' to '{}': source and destination "
                                      "are the same",
                                      conversion.get_source(), conversion.get_destination()));
    const gl::GlProfile profile = dialect == CORE ? gl::GlProfile::CORE : gl::GlProfile::LEGACY;
    const workflow::GpuConversion gpu = workflow::make_gpu_conversion(conversion, profile);
    const std::vector<std::string> files = workflow::write_gpu_conversion(gpu, folder);
    if (!as_json)
        print_files(conversion, files, console);
    const workflow::ShaderComparison comparison = workflow::compare_shader(gpu, profile, conversion);
    if (comparison.warning) // the written files do not depend on the comparison
        console.report(*comparison.warning);
    if (as_json) {
        console.print_text(to_json(conversion, files, comparison).format());
    } else if (!comparison.renderer.empty()) {
        console.print(fmt::format("Shader ({}) against CPU:", comparison.renderer));
        make_rows().make_table(comparison.differences).print(console);
        for (const ColorDifference& difference : comparison.differences)
            if (difference.incomparable > 0)
                console.print(fmt::format("{}: {}", difference.colors, describe_incomparable(difference)));
    }
    return EXIT_CODE_DONE;
}

Json ShaderCommand::to_json(const workflow::Conversion& conversion, const std::vector<std::string>& files,
                            const workflow::ShaderComparison& comparison) const {
    return {{"source", conversion.get_source()},
            {"destination", conversion.get_destination()},
            {"glsl", dialect},
            {"files", files},
            {"renderer", comparison.renderer.empty() ? Json() : Json(comparison.renderer)},
            {"differences", make_rows().make_array(comparison.differences)}};
}

} // namespace tool
