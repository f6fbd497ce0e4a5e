#include "colorio/ocio/config.h"

#include <strings.h>

#include "colorio/ocio/color_space.h"
#include "colorio/ocio/error.h"
#include "colorio/ocio/guarded.h"

namespace ocio {

int get_num_color_spaces(const ConstConfigRcPtr& config) {
    return config->getNumColorSpaces();
}

const char* get_color_space_name_by_index(const ConstConfigRcPtr& config, int index) {
    return config->getColorSpaceNameByIndex(index);
}

ConstColorSpaceRcPtr get_color_space(const ConstConfigRcPtr& config, const char* name) {
    return config->getColorSpace(name);
}

std::unordered_set<std::string> list_own_names(const ConstConfigRcPtr& config) {
    std::unordered_set<std::string> names;
    for (int i = 0; i < config->getNumColorSpaces(); ++i)
        names.emplace(config->getColorSpaceNameByIndex(i));
    return names;
}

void add_color_space(const ConfigRcPtr& config, const ConstColorSpaceRcPtr& space) {
    // OpenColorIO would accept it, and refuse the config afterwards.
    if (config->hasRole(get_name(space)))
        throw_error(diagnostics::Code::NAME_DUPLICATE,
                    "a color space cannot have the name of the role '" + std::string(get_name(space)) + "'",
                    get_name(space));
    guarded([&] { config->addColorSpace(space); });
}

void clear_color_spaces(const ConfigRcPtr& config) {
    config->clearColorSpaces();
}

std::string get_role_color_space(const ConstConfigRcPtr& config, const char* role) {
    if (!config->hasRole(role))
        return {};
    const ConstColorSpaceRcPtr space = config->getColorSpace(role);
    return space ? get_name(space) : "";
}

} // namespace ocio
