#include "colorio/ocio/config.h"

#include <strings.h>

#include "colorio/ocio/guarded.h"
#include "colorio/ocio/lookup_memo.h"

namespace ocio {

namespace {

/// Version 1 has no inactive color spaces, although an environment variable can make OpenColorIO hide some.
library::ColorSpaceVisibility published_spaces(const ConstConfigRcPtr& config) {
    return get_major_version(config) == 1 ? library::COLORSPACE_ALL : library::COLORSPACE_ACTIVE;
}

} // namespace

int get_num_color_spaces(const ConstConfigRcPtr& config) {
    return config->getNumColorSpaces(library::SEARCH_REFERENCE_SPACE_ALL, published_spaces(config));
}

const char* get_color_space_name_by_index(const ConstConfigRcPtr& config, int index) {
    return config->getColorSpaceNameByIndex(library::SEARCH_REFERENCE_SPACE_ALL, published_spaces(config),
                                            index);
}

ConstColorSpaceRcPtr get_color_space(const ConstConfigRcPtr& config, const char* name) {
    ConstColorSpaceRcPtr space = find_space(config, name);
    if (!space && !config->isStrictParsingEnabled())
        space = find_space(config, ROLE_DEFAULT);
    return space;
}

std::unordered_set<std::string> list_own_names(const ConstConfigRcPtr& config) {
    constexpr auto OF_SCENE_AND_DISPLAY = library::SEARCH_REFERENCE_SPACE_ALL;
    std::unordered_set<std::string> names;
    const int count = config->getNumColorSpaces(OF_SCENE_AND_DISPLAY, library::COLORSPACE_ALL);
    for (int i = 0; i < count; ++i)
        names.emplace(config->getColorSpaceNameByIndex(OF_SCENE_AND_DISPLAY, library::COLORSPACE_ALL, i));
    return names;
}

void add_color_space(const ConfigRcPtr& config, const ConstColorSpaceRcPtr& space) {
    guarded([&] { config->addColorSpace(space); });
}

void clear_color_spaces(const ConfigRcPtr& config) {
    config->clearColorSpaces();
}

std::string get_role_color_space(const ConstConfigRcPtr& config, const char* role) {
    for (int i = 0; i < config->getNumRoles(); ++i)
        if (strcasecmp(config->getRoleName(i), role) == 0)
            return config->getRoleColorSpace(i);
    return {};
}

} // namespace ocio
