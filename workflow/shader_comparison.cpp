#include "workflow/shader_comparison.h"

#include <cmath>
#include <utility>

#include "diagnostics/failure.h"

namespace workflow {

namespace {

/// Levels of the even grid. 45 steps are not a multiple of the 3D LUT's 31, so that colors fall at all
/// positions between its points.
constexpr unsigned int EVEN_EDGE = 46;

/// Range of the wide grid, in stops from 1.
constexpr int DARKEST = -10;
constexpr int BRIGHTEST = 4;
constexpr int STEPS_PER_STOP = 2;

std::vector<float> get_wide_levels() {
    std::vector<float> levels;
    for (int step = DARKEST * STEPS_PER_STOP; step <= BRIGHTEST * STEPS_PER_STOP; ++step)
        levels.push_back(static_cast<float>(std::exp2(static_cast<double>(step) / STEPS_PER_STOP)));
    return levels;
}

ColorDifference compare(const std::string& name, const std::vector<float>& levels, gl::GlEvaluator& evaluator,
                        const Conversion& conversion) {
    const std::vector<float> inputs = make_color_grid(levels);
    std::vector<float> cpu = inputs;
    conversion.apply(cpu.data(), static_cast<unsigned int>(inputs.size() / 4), 1);
    return compare_colors(name, inputs, cpu, evaluator.run(inputs));
}

} // namespace

std::vector<ColorDifference> compare_shader(gl::GlEvaluator& evaluator, const GpuConversion& shader,
                                            const Conversion& conversion) {
    std::vector<gl::Lut3d> luts;
    for (const GpuLut& lut : shader.luts)
        luts.push_back({lut.values.data(), static_cast<int>(lut.edge)});
    try {
        evaluator.load(shader.text, luts, shader.takes_gain ? "1.0" : "");
        return {compare("0 to 1", make_even_levels(EVEN_EDGE), evaluator, conversion),
                compare("1/1024 to 16", get_wide_levels(), evaluator, conversion)};
    } catch (const diagnostics::Failure& failure) {
        throw diagnostics::Failure(diagnostics::add_context("cannot compare the shader with the CPU",
                                                            failure.get_diagnostics(),
                                                            diagnostics::Code::SHADER_INVALID));
    }
}

ShaderComparison compare_shader(const GpuConversion& shader, gl::GlProfile profile,
                                const Conversion& conversion) {
    std::optional<gl::GlEvaluator> evaluator;
    try {
        evaluator.emplace(profile);
    } catch (const diagnostics::Failure& failure) {
        diagnostics::Diagnostic warning =
            add_context("cannot compare the shader with the CPU", failure.get_diagnostics(),
                        diagnostics::Code::GPU_UNAVAILABLE);
        warning.severity = diagnostics::Severity::WARNING;
        return {"", {}, std::move(warning)};
    }
    return {evaluator->get_renderer(), compare_shader(*evaluator, shader, conversion), std::nullopt};
}

} // namespace workflow
