#pragma once

#include <array>
#include <string>
#include <vector>

namespace ocio {

/// The description of an operation, and the pixel after it: red, green, blue, alpha.
struct ExplainedStep {
    std::string operation;
    std::array<float, 4> pixel;
};

/// What converts pixels.
enum class EvaluationPath {
    None,    ///< no operations: colors are unchanged
    Vector,  ///< this project's SIMD code
    Library, ///< OpenColorIO, for the `reason` given
};

/// How a processor converts.
struct Explanation {
    std::vector<std::string> operations; ///< as OpenColorIO lists them
    std::vector<ExplainedStep> steps;    ///< as they are computed
    EvaluationPath path = EvaluationPath::None;
    std::string reason;        ///< empty unless the path is OpenColorIO
    std::string vector_target; ///< instruction set of the SIMD code; empty unless that is the path
};

} // namespace ocio
