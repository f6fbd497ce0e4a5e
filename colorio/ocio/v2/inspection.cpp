#include "colorio/ocio/inspection.h"

#include <algorithm>
#include <set>

#include "colorio/ocio/config.h"
#include "colorio/ocio/error.h"
#include "colorio/ocio/lookup_memo.h"
#include "colorio/ocio/processor.h"
#include "colorio/ocio/sanity_check.h"

namespace ocio {

namespace {

using library::ConstNamedTransformRcPtr;
using library::ConstViewTransformRcPtr;

/// A color space or a named transform, which describe themselves alike.
template <typename Facts, typename Entry>
Facts describe_entry(const Entry& entry) {
    Facts facts;
    facts.name = entry.getName();
    facts.family = entry.getFamily();
    facts.description = entry.getDescription();
    facts.encoding = entry.getEncoding();
    for (std::size_t i = 0; i < entry.getNumAliases(); ++i)
        facts.aliases.emplace_back(entry.getAlias(i));
    for (int i = 0; i < entry.getNumCategories(); ++i)
        facts.categories.emplace_back(entry.getCategory(i));
    return facts;
}

std::set<std::string> active_space_names(const ConstConfigRcPtr& config) {
    std::set<std::string> names;
    for (int i = 0; i < get_num_color_spaces(config); ++i)
        names.emplace(get_color_space_name_by_index(config, i));
    return names;
}

std::set<std::string> active_named_transform_names(const ConstConfigRcPtr& config) {
    std::set<std::string> names;
    for (int i = 0; i < config->getNumNamedTransforms(library::NAMEDTRANSFORM_ACTIVE); ++i)
        names.emplace(config->getNamedTransformNameByIndex(library::NAMEDTRANSFORM_ACTIVE, i));
    return names;
}

bool is_shared_view(const ConstConfigRcPtr& config, const char* display, const std::string& view) {
    for (int i = 0; i < config->getNumViews(library::VIEW_SHARED, display); ++i)
        if (view == config->getView(library::VIEW_SHARED, display, i))
            return true;
    return false;
}

} // namespace

std::vector<SpaceFacts> describe_spaces(const ConstConfigRcPtr& config) {
    constexpr auto REFERENCES = library::SEARCH_REFERENCE_SPACE_ALL;
    const std::set<std::string> active = active_space_names(config);
    std::vector<SpaceFacts> spaces;
    for (int i = 0; i < config->getNumColorSpaces(REFERENCES, library::COLORSPACE_ALL); ++i) {
        const char* name = config->getColorSpaceNameByIndex(REFERENCES, library::COLORSPACE_ALL, i);
        const ConstColorSpaceRcPtr space = find_space(config, name);
        spaces.push_back(describe_entry<SpaceFacts>(*space));
        spaces.back().is_active = active.count(name) != 0;
        spaces.back().is_display_referred =
            space->getReferenceSpaceType() == library::REFERENCE_SPACE_DISPLAY;
        spaces.back().is_data = space->isData();
#if OCIO_VERSION_HEX >= 0x02050000
        spaces.back().interop_id = space->getInteropID();
#endif
    }
    return spaces;
}

std::vector<NamedTransformFacts> describe_named_transforms(const ConstConfigRcPtr& config) {
    const std::set<std::string> active = active_named_transform_names(config);
    std::vector<NamedTransformFacts> transforms;
    for (int i = 0; i < config->getNumNamedTransforms(library::NAMEDTRANSFORM_ALL); ++i) {
        const char* name = config->getNamedTransformNameByIndex(library::NAMEDTRANSFORM_ALL, i);
        const ConstNamedTransformRcPtr named = config->getNamedTransform(name);
        transforms.push_back(describe_entry<NamedTransformFacts>(*named));
        transforms.back().is_active = active.count(name) != 0;
        transforms.back().has_forward = named->getTransform(TRANSFORM_DIR_FORWARD) != nullptr;
        transforms.back().has_inverse = named->getTransform(TRANSFORM_DIR_INVERSE) != nullptr;
    }
    return transforms;
}

ViewFacts describe_view(const ConstConfigRcPtr& config, const std::string& display, const std::string& view) {
    ViewFacts facts;
    const std::string shown = get_display_color_space_name(config, display.c_str(), view.c_str());
    if (shown.empty())
        return facts;
    facts.color_space = shown;
    if (const ConstNamedTransformRcPtr named = config->getNamedTransform(shown.c_str())) {
        facts.color_space.clear();
        facts.named_transform = named->getName();
    } else if (const ConstColorSpaceRcPtr space = get_color_space(config, shown.c_str())) {
        facts.color_space = space->getName();
        facts.family = space->getFamily();
    }
    facts.view_transform = config->getDisplayViewTransformName(display.c_str(), view.c_str());
    facts.looks = get_view_looks(config, display, view);
    facts.description = config->getDisplayViewDescription(display.c_str(), view.c_str());
    facts.is_shared = is_shared_view(config, display.c_str(), view);
    return facts;
}

std::vector<std::string> list_view_transforms(const ConstConfigRcPtr& config) {
    std::vector<std::string> names;
    for (int i = 0; i < config->getNumViewTransforms(); ++i)
        names.emplace_back(config->getViewTransformNameByIndex(i));
    return names;
}

void try_view_transform(const ConstConfigRcPtr& config, const std::string& name) {
    const ConstViewTransformRcPtr view_transform = config->getViewTransform(name.c_str());
    if (!view_transform)
        throw_error(diagnostics::Code::VIEW_TRANSFORM_UNKNOWN, "unknown view transform '" + name + "'", name);
    for (const auto direction :
         {library::VIEWTRANSFORM_DIR_FROM_REFERENCE, library::VIEWTRANSFORM_DIR_TO_REFERENCE})
        if (const ConstTransformRcPtr transform = view_transform->getTransform(direction))
            get_processor(config, transform);
}

} // namespace ocio
