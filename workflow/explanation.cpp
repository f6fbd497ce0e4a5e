#include "workflow/explanation.h"

#include <utility>

#include <fmt/format.h>

#include "colorio/color_io_converter.h"
#include "colorio/color_io_diagnostics.h"
#include "diagnostics/failure.h"
#include "workflow/conversion.h"

namespace workflow {

namespace {

void explain_stage(const Conversion::Stage& stage, const GMathVec4<float>& value,
                   ColorIOEvaluation::Explanation& how) {
    ColorIODiagnostics collector;
    if (!ColorIOEvaluation::explain(*stage.converter, value, how))
        throw diagnostics::Failure(diagnostics::add_context(fmt::format("cannot explain {}", stage.title),
                                                            collector.take(),
                                                            diagnostics::Code::CONVERSION_IMPOSSIBLE));
}

} // namespace

std::vector<ExplainedStage> explain_conversion(const Conversion& conversion,
                                               const std::array<float, 4>& pixel) {
    std::vector<ExplainedStage> explained;
    GMathVec4<float> value(pixel[0], pixel[1], pixel[2], pixel[3]);
    for (const Conversion::Stage& stage : conversion.get_stages()) {
        ExplainedStage part{stage.title, {}};
        explain_stage(stage, value, part.how);
        if (const unsigned int count = part.how.steps.get_count())
            value = part.how.steps[count - 1].pixel;
        explained.push_back(std::move(part));
    }
    return explained;
}

std::string describe_path(const ColorIOEvaluation::Explanation& how) {
    switch (how.path) {
    case ColorIOEvaluation::PATH_NONE:
        return "no operations: pixels are unchanged";
    case ColorIOEvaluation::PATH_VECTOR:
        return fmt::format("converted by SIMD code ({})", how.vector_target.get_data());
    case ColorIOEvaluation::PATH_LIBRARY:
        break;
    }
    return fmt::format("converted by OpenColorIO because {}", how.reason.get_data());
}

} // namespace workflow
