#include "workflow/explanation.h"

#include <fmt/format.h>

#include "colorio/color_io_converter.h"
#include "workflow/cdl/grade.h"
#include "workflow/conversion.h"

namespace tool {

namespace {

/// Follows a pixel from converter to converter.
class Way {
public:
    explicit Way(const std::array<float, 4>& start) : pixel(start[0], start[1], start[2], start[3]) {}

    void follow(const ColorIOConverter& converter, const std::string& title) {
        ExplainedPart part{title, {}};
        if (!ColorIOEvaluation::explain(converter, pixel, part.how))
            return;
        if (const unsigned int count = part.how.steps.get_count())
            pixel = part.how.steps[count - 1].pixel;
        parts.push_back(std::move(part));
    }

    std::vector<ExplainedPart> parts;

private:
    GMathVec4<float> pixel;
};

std::string from_to(const std::string& from, const std::string& to) {
    return fmt::format("{} to {}", from, to);
}

} // namespace

std::vector<ExplainedPart> explain_conversion(const ColorConversion& conversion,
                                              const ConversionRequest& request,
                                              const std::array<float, 4>& pixel) {
    Way way(pixel);
    std::string start = conversion.get_source();
    if (const Grade* grade = conversion.get_grade()) {
        if (grade->get_approach())
            way.follow(*grade->get_approach(), from_to(start, grade->get_working_space()));
        start = grade->get_working_space();
        way.follow(grade->get_correction(),
                   fmt::format("{}{} in {}", request.cdl, request.undoes_cdl ? ", undone," : "", start));
    }
    way.follow(conversion.get_converter(), from_to(start, conversion.get_target()));
    return std::move(way.parts);
}

std::string describe_path(const ColorIOEvaluation::Explanation& how) {
    switch (how.path) {
    case ColorIOEvaluation::PATH_NONE:
        return "nothing is to be done: pixels stay as they are";
    case ColorIOEvaluation::PATH_VECTOR:
        return fmt::format("pixels take the module's vector code ({})", how.vector_target.get_data());
    case ColorIOEvaluation::PATH_LIBRARY:
        break;
    }
    return fmt::format("pixels take the colour library, because {}", how.reason.get_data());
}

} // namespace tool
