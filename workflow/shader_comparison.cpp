#include "workflow/shader_comparison.h"

#include <cmath>

#include "diagnostics/failure.h"
#include "gl/gl_error.h"

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

ColorDifference compare(const std::string& name, const std::vector<float>& levels, gl::GlEvaluator& shader,
                        const Conversion& conversion) {
    const std::vector<float> inputs = make_color_grid(levels);
    std::vector<float> cpu = inputs;
    conversion.apply(cpu.data(), static_cast<unsigned int>(inputs.size() / 4), 1);
    return compare_colors(name, inputs, cpu, shader.run(inputs));
}

} // namespace

std::vector<ColorDifference> compare_shader(gl::GlEvaluator& shader, const Conversion& conversion) {
    try {
        return {compare("0 to 1", make_even_levels(EVEN_EDGE), shader, conversion),
                compare("1/1024 to 16", get_wide_levels(), shader, conversion)};
    } catch (const gl::GlError& error) {
        diagnostics::fail(diagnostics::Code::GPU_UNAVAILABLE,
                          std::string("the shader cannot be compared with the CPU: ") + error.what());
    }
}

} // namespace workflow
