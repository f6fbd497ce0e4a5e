#pragma once

#include <optional>
#include <string>
#include <vector>

#include "diagnostics/diagnostic.h"
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

/// The shader of a conversion against the CPU.
struct ShaderComparison {
    std::string renderer;                           ///< Of OpenGL; empty without a comparison.
    std::vector<ColorDifference> differences;       ///< Empty without a comparison.
    std::optional<diagnostics::Diagnostic> warning; ///< Why OpenGL is not available.
};

/// Compares `shader`, made of `conversion` for that profile. Throws diagnostics::Failure when OpenGL is
/// available and the comparison fails.
ShaderComparison compare_shader(const GpuConversion& shader, gl::GlProfile profile,
                                const Conversion& conversion);

} // namespace workflow
