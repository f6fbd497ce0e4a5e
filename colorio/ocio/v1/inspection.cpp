#include "colorio/ocio/inspection.h"

#include "colorio/ocio/config.h"
#include "colorio/ocio/error.h"
#include "colorio/ocio/sanity_check.h"

namespace ocio {

std::vector<SpaceFacts> describe_spaces(const ConstConfigRcPtr& config) {
    std::vector<SpaceFacts> spaces;
    for (int i = 0; i < get_num_color_spaces(config); ++i) {
        const ConstColorSpaceRcPtr space = config->getColorSpace(get_color_space_name_by_index(config, i));
        SpaceFacts facts;
        facts.name = space->getName();
        facts.family = space->getFamily();
        facts.description = space->getDescription();
        facts.is_data = space->isData();
        spaces.push_back(std::move(facts));
    }
    return spaces;
}

std::vector<NamedTransformFacts> describe_named_transforms(const ConstConfigRcPtr&) {
    return {};
}

ViewFacts describe_view(const ConstConfigRcPtr& config, const std::string& display, const std::string& view) {
    ViewFacts facts;
    facts.color_space = get_display_color_space_name(config, display.c_str(), view.c_str());
    if (facts.color_space.empty())
        return facts;
    if (const ConstColorSpaceRcPtr space = get_color_space(config, facts.color_space.c_str())) {
        facts.color_space = space->getName();
        facts.family = space->getFamily();
    }
    facts.looks = get_view_looks(config, display, view);
    return facts;
}

std::vector<std::string> list_view_transforms(const ConstConfigRcPtr&) {
    return {};
}

void try_view_transform(const ConstConfigRcPtr&, const std::string& name) {
    throw_error(diagnostics::Code::VIEW_TRANSFORM_UNKNOWN, "unknown view transform '" + name + "'", name);
}

} // namespace ocio
