#pragma once

#include <string>
#include <vector>

#include "gl/gl_evaluator.h"
#include "workflow/conversion.h"

namespace workflow {

/// How far the shader is from the CPU over one grid of colors.
struct ShaderDifference {
    std::string grid;     ///< "0 to 1", say.
    std::size_t points;   ///< Colors in the grid.
    double largest = 0;   ///< Absolute, of any component; infinite where only one of the two is finite.
    float at[3] = {};     ///< The color where it is largest.
    float cpu[3] = {};    ///< What the CPU makes of it.
    float shader[3] = {}; ///< What the shader makes of it.
    double mean = 0;      ///< Of all components.
};

/// Converts grids of colors by the shader that is loaded and by the CPU: evenly spaced ones from 0 to 1, and
/// a wide range in equal ratios. Throws GlError.
std::vector<ShaderDifference> compare_shader(gl::GlEvaluator& shader, const Conversion& conversion);

} // namespace workflow
