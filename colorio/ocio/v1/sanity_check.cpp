#include "colorio/ocio/sanity_check.h"

#include "colorio/ocio/config.h"

namespace ocio {

namespace {

/// A copy in which all displays and views are active.
ConstConfigRcPtr with_nothing_hidden(const ConstConfigRcPtr& config) {
    const ConfigRcPtr copy = create_editable_copy(config);
    copy->setActiveDisplays("");
    copy->setActiveViews("");
    return copy;
}

} // namespace

/// OpenColorIO reports the color space of a role, but not the name of one that does not exist.
std::vector<Role> known_roles(const ConstConfigRcPtr& config) {
    std::vector<Role> roles;
    for (int i = 0; i < config->getNumRoles(); ++i) {
        const std::string color_space = get_role_color_space(config, config->getRoleName(i));
        if (!color_space.empty())
            roles.push_back({config->getRoleName(i), color_space});
    }
    return roles;
}

std::vector<DisplayViews> every_display(const ConstConfigRcPtr& config) {
    const ConstConfigRcPtr shown = with_nothing_hidden(config);
    std::vector<DisplayViews> displays;
    for (int i = 0; i < get_num_displays(shown); ++i) {
        const char* name = get_display(shown, i);
        displays.push_back({name, {}});
        for (int view = 0; view < get_num_views(shown, name); ++view)
            displays.back().views.emplace_back(get_view(shown, name, view));
    }
    return displays;
}

std::string get_view_looks(const ConstConfigRcPtr& config, const std::string& display,
                           const std::string& view) {
    return config->getDisplayLooks(display.c_str(), view.c_str());
}

void check_by_library(const ConstConfigRcPtr& config) {
    config->sanityCheck();
}

} // namespace ocio
