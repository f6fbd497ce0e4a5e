#pragma once

#include <array>
#include <string>
#include <vector>

#include "colorio/color_io_evaluation.h"

namespace workflow {

class Conversion;

/// Explanation of one stage of a conversion.
struct ExplainedStage {
    std::string title; ///< `Conversion::Stage::title`.
    ColorIOEvaluation::Explanation how;
};

/// The operations of every stage, and the values of `pixel` (red, green, blue, alpha) after each of them.
/// Empty for a conversion that leaves pixels unchanged. Throws diagnostics::Failure when OpenColorIO cannot
/// explain a stage.
std::vector<ExplainedStage> explain_conversion(const Conversion& conversion,
                                               const std::array<float, 4>& pixel);

/// How the pixels of a stage are converted: "converted by SIMD code (AVX2)", or "converted by OpenColorIO
/// because ...".
std::string describe_path(const ColorIOEvaluation::Explanation& how);

/// The same as one word: "none", "simd" or "opencolorio".
const char* get_path_name(ColorIOEvaluation::Path path);

/// Heading of the operations that are carried out: "simplified from 4 to 2:".
std::string describe_simplification(const ColorIOEvaluation::Explanation& how);

} // namespace workflow
