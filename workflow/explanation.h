#pragma once

#include <array>
#include <string>
#include <vector>

#include "colorio/color_io_evaluation.h"

namespace tool {

class ColorConversion;
struct ConversionRequest;

/// One of the module's conversions that a request consists of.
struct ExplainedPart {
    std::string title; ///< "Tavelion|sRGB to Tavelion|linear", "grades.ccc:shot_010 in Tavelion|linear".
    ColorIOEvaluation::Explanation how;
};

/// The way of a pixel (red, green, blue, alpha) through a conversion; empty when it leaves colours as they
/// are.
std::vector<ExplainedPart> explain_conversion(const ColorConversion& conversion,
                                              const ConversionRequest& request,
                                              const std::array<float, 4>& pixel);

/// What converts the part's pixels: "pixels take the module's vector code (AVX2)".
std::string describe_path(const ColorIOEvaluation::Explanation& how);

} // namespace tool
