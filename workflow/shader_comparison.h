#pragma once

#include <vector>

#include "gl/gl_evaluator.h"
#include "workflow/color_difference.h"
#include "workflow/conversion.h"
#include "workflow/gpu_package.h"

namespace workflow {

/// Converts two grids of colors by the shader and by the CPU: 46^3 evenly spaced colors from 0 to 1, and 29^3
/// colors from 1/1024 to 16 in half stops. `shader` is the GPU form of `conversion` for the evaluator's
/// profile; its exposure is 0. Throws diagnostics::Failure.
std::vector<ColorDifference> compare_shader(gl::GlEvaluator& evaluator, const GpuConversion& shader,
                                            const Conversion& conversion);

} // namespace workflow
