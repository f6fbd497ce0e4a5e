#pragma once

#include <vector>

#include "gl/gl_evaluator.h"
#include "workflow/color_difference.h"
#include "workflow/conversion.h"

namespace workflow {

/// Converts two grids of colors by the loaded shader and by the CPU: 46^3 evenly spaced colors from 0 to 1,
/// and 29^3 colors from 1/1024 to 16 in half stops. `shader` must hold the shader of `conversion`. Throws
/// diagnostics::Failure.
std::vector<ColorDifference> compare_shader(gl::GlEvaluator& shader, const Conversion& conversion);

} // namespace workflow
