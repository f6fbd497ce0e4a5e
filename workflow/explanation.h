#pragma once

#include <array>
#include <string>
#include <vector>

#include "colorio/color_io_evaluation.h"

namespace workflow {

class Conversion;

/// One stage of a conversion, explained.
struct ExplainedStage {
    std::string title; ///< As `Conversion::Stage` has it.
    ColorIOEvaluation::Explanation how;
};

/// The operations of every stage, and `pixel` (red, green, blue, alpha) after each of them. Empty for a
/// conversion that leaves pixels unchanged. Throws diagnostics::Failure when OpenColorIO does.
std::vector<ExplainedStage> explain_conversion(const Conversion& conversion,
                                               const std::array<float, 4>& pixel);

/// What converts the pixels of a stage: "converted by SIMD code (AVX2)".
std::string describe_path(const ColorIOEvaluation::Explanation& how);

} // namespace workflow
