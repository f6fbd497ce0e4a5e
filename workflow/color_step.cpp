#include "workflow/color_step.h"

#include <algorithm>

namespace workflow {

bool has_scene_linear_step(const std::vector<ColorStep>& steps) {
    return std::any_of(steps.begin(), steps.end(),
                       [](const ColorStep& step) { return step.is_scene_linear(); });
}

const char* get_kind_name(ColorStep::Kind kind) {
    switch (kind) {
    case ColorStep::CDL:
        return "CDL";
    case ColorStep::LOOKS:
        return "looks";
    case ColorStep::NAMED_TRANSFORM:
        return "named transform";
    case ColorStep::LUT:
        break;
    }
    return "LUT";
}

} // namespace workflow
