#pragma once

#include <string>
#include <vector>

#include "gl/gl_evaluator.h"
#include "workflow/conversion.h"

namespace workflow {

/// Difference between shader and CPU over one grid of colors.
struct ShaderDifference {
    std::string grid;     ///< Name of the grid: "0 to 1".
    std::size_t points;   ///< Colors in the grid.
    double largest = 0;   ///< Absolute, of any component; infinite where only one of the two is finite.
    float at[3] = {};     ///< Input color of the largest difference.
    float cpu[3] = {};    ///< Result of the CPU for it.
    float shader[3] = {}; ///< Result of the shader for it.
    double mean = 0;      ///< Mean of the absolute differences of all components.
};

/// Converts two grids of colors by the loaded shader and by the CPU: 46^3 evenly spaced colors from 0 to 1,
/// and 29^3 colors from 1/1024 to 16 in half stops. `shader` must hold the shader of `conversion`. Throws
/// diagnostics::Failure.
std::vector<ShaderDifference> compare_shader(gl::GlEvaluator& shader, const Conversion& conversion);

} // namespace workflow
