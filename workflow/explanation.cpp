#include "workflow/explanation.h"

#include <utility>

#include <fmt/format.h>

#include "colorio/color_io_converter.h"
#include "workflow/conversion.h"
#include "workflow/module_call.h"

namespace workflow {

std::vector<ExplainedStage> explain_conversion(const Conversion& conversion,
                                               const std::array<float, 4>& pixel) {
    std::vector<ExplainedStage> explained;
    GMathVec4<float> value(pixel[0], pixel[1], pixel[2], pixel[3]);
    for (const Conversion::Stage& stage : conversion.get_stages()) {
        ExplainedStage part{stage.title, {}};
        require_success(fmt::format("cannot explain {}", stage.title),
                        diagnostics::Code::CONVERSION_IMPOSSIBLE,
                        [&] { return ColorIOEvaluation::explain(*stage.converter, value, part.how); });
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

const char* get_path_name(ColorIOEvaluation::Path path) {
    switch (path) {
    case ColorIOEvaluation::PATH_NONE:
        return "none";
    case ColorIOEvaluation::PATH_VECTOR:
        return "simd";
    case ColorIOEvaluation::PATH_LIBRARY:
        break;
    }
    return "opencolorio";
}

std::string describe_simplification(const ColorIOEvaluation::Explanation& how) {
    const unsigned int before = how.operations.get_count(), after = how.steps.get_count();
    if (after < before)
        return fmt::format("simplified from {} to {}:", before, after);
    for (unsigned int i = 0; i < before; ++i)
        if (how.operations[i] != how.steps[i].operation)
            return "simplified to:";
    return "carried out one by one:";
}

} // namespace workflow
