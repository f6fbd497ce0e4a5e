#include "colorio/ocio/sanity_check.h"

#include "colorio/ocio/config.h"
#include "colorio/ocio/error.h"
#include "colorio/ocio/unset_variables.h"
#include "colorio/ocio/v2/config_views.h"

namespace ocio {

std::vector<Role> known_roles(const ConstConfigRcPtr& config) {
    std::vector<Role> roles;
    for (int i = 0; i < config->getNumRoles(); ++i)
        roles.push_back({config->getRoleName(i), config->getRoleColorSpace(i)});
    return roles;
}

std::vector<DisplayViews> every_display(const ConstConfigRcPtr& config) {
    std::vector<DisplayViews> displays;
    for (int i = 0; i < config->getNumDisplaysAll(); ++i) {
        const char* name = config->getDisplayAll(i);
        displays.push_back({name, {}});
        displays.back().views = list_all_views(config, name);
    }
    return displays;
}

std::string get_view_looks(const ConstConfigRcPtr& config, const std::string& display,
                           const std::string& view) {
    return config->getDisplayViewLooks(display.c_str(), view.c_str());
}

/// On a copy: the library remembers a failure but not always its reason, and demands a search path as soon as
/// one file is named. The rules for version 1 are complete: the library would refuse more. Unset variables
/// are the cause if the config is valid without any; otherwise, what else is wrong is reported.
void check_by_library(const ConstConfigRcPtr& config) {
    if (get_major_version(config) == 1)
        return;
    const ConfigRcPtr copy = create_editable_copy(config);
    if (copy->getNumSearchPaths() == 0)
        copy->addSearchPath(".");
    try {
        copy->validate();
    } catch (const Exception& exception) {
        const auto unset = find_unset_variable(copy);
        if (!unset)
            throw;
        with_all_variables_set(copy)->validate();
        throw Error(*unset, exception.what());
    }
}

} // namespace ocio
