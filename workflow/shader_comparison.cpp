#include "workflow/shader_comparison.h"

#include <algorithm>
#include <cmath>
#include <limits>

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

std::vector<float> get_even_levels() {
    std::vector<float> levels;
    for (unsigned int i = 0; i < EVEN_EDGE; ++i)
        levels.push_back(static_cast<float>(i) / static_cast<float>(EVEN_EDGE - 1));
    return levels;
}

std::vector<float> get_wide_levels() {
    std::vector<float> levels;
    for (int step = DARKEST * STEPS_PER_STOP; step <= BRIGHTEST * STEPS_PER_STOP; ++step)
        levels.push_back(static_cast<float>(std::exp2(static_cast<double>(step) / STEPS_PER_STOP)));
    return levels;
}

/// RGBA pixels of every combination of the levels, with alpha 1.
std::vector<float> make_grid(const std::vector<float>& levels) {
    std::vector<float> pixels;
    for (const float red : levels)
        for (const float green : levels)
            for (const float blue : levels)
                pixels.insert(pixels.end(), {red, green, blue, 1.0f});
    return pixels;
}

double get_difference(float a, float b) {
    if (a == b || (std::isnan(a) && std::isnan(b)))
        return 0.0;
    const double difference = std::fabs(static_cast<double>(a) - b);
    return std::isfinite(difference) ? difference : std::numeric_limits<double>::infinity();
}

ShaderDifference compare(const std::string& name, const std::vector<float>& levels, gl::GlEvaluator& shader,
                         const Conversion& conversion) {
    const std::vector<float> inputs = make_grid(levels);
    std::vector<float> cpu = inputs;
    conversion.apply(cpu.data(), static_cast<unsigned int>(inputs.size() / 4), 1);
    const std::vector<float> gpu = shader.run(inputs);

    ShaderDifference result;
    result.grid = name;
    result.points = inputs.size() / 4;
    double sum = 0;
    for (std::size_t i = 0; i < inputs.size(); ++i) {
        if (i % 4 == 3)
            continue;
        const double difference = get_difference(cpu[i], gpu[i]);
        sum += difference;
        if (difference <= result.largest)
            continue;
        result.largest = difference;
        const std::size_t pixel = i - i % 4;
        std::copy_n(&inputs[pixel], 3, result.at);
        std::copy_n(&cpu[pixel], 3, result.cpu);
        std::copy_n(&gpu[pixel], 3, result.shader);
    }
    result.mean = sum / (3.0 * static_cast<double>(result.points));
    return result;
}

} // namespace

std::vector<ShaderDifference> compare_shader(gl::GlEvaluator& shader, const Conversion& conversion) {
    try {
        return {compare("0 to 1", get_even_levels(), shader, conversion),
                compare("1/1024 to 16", get_wide_levels(), shader, conversion)};
    } catch (const gl::GlError& error) {
        diagnostics::fail(diagnostics::Code::GPU_UNAVAILABLE,
                          std::string("the shader cannot be compared with the CPU: ") + error.what());
    }
}

} // namespace workflow
