#include "colorio/ocio/v2/config_views.h"

#include <cstdlib>
#include <string_view>

#include "colorio/ocio/config.h"
#include "colorio/ocio/guarded.h"
#include "colorio/ocio/lookup_memo.h"

namespace ocio {

namespace {

/// Used as the color space of a shared view that shows the color space with the name of its display.
constexpr std::string_view USE_DISPLAY_NAME = "<USE_DISPLAY_NAME>";

bool has_list_of_active_views(const ConstConfigRcPtr& config) {
    const char* from_environment = std::getenv("OCIO_ACTIVE_VIEWS");
    return *config->getActiveViews() || (from_environment && *from_environment);
}

bool is_view_at(const ConstConfigRcPtr& config, const char* display, const std::vector<std::string>& views,
                std::size_t index) {
    return views[index] == config->getView(display, static_cast<int>(index));
}

/// The color space's name where `name` is an alias. A role stays a role, as on 1.x.
std::string without_alias(const ConstConfigRcPtr& config, const char* name) {
    const ConstColorSpaceRcPtr space = find_space(config, name);
    return space && !config->hasRole(name) ? space->getName() : name;
}

} // namespace

std::string get_display_color_space_name(const ConstConfigRcPtr& config, const char* display,
                                         const char* view) {
    return get_display_color_space_name(config, display, view, {});
}

std::string get_display_color_space_name(const ConstConfigRcPtr& config, const char* display,
                                         const char* view, const std::unordered_set<std::string>& own_names) {
    // OpenColorIO finds shared views even without a display.
    if (!*display || !*view)
        return {};
    const char* name = config->getDisplayViewColorSpaceName(display, view);
    if (name == USE_DISPLAY_NAME)
        name = display;
    return own_names.count(name) != 0 ? name : without_alias(config, name);
}

std::vector<std::string> list_all_views(const ConstConfigRcPtr& config, const char* display) {
    std::vector<std::string> views;
    for (const library::ViewType type : {library::VIEW_DISPLAY_DEFINED, library::VIEW_SHARED}) {
        const int count = config->getNumViews(type, display);
        for (int i = 0; i < count; ++i)
            views.emplace_back(config->getView(type, display, i));
    }
    return views;
}

/// OpenColorIO collects all views of a display again for each lookup by position. Without a list of active
/// views, all are shown in their order; where a display has shared views, the first and last are compared.
std::vector<std::string> list_views(const ConstConfigRcPtr& config, const char* display) {
    const int count = config->getNumViews(display);
    if (count > 0 && !has_list_of_active_views(config)) {
        std::vector<std::string> views = list_all_views(config, display);
        const bool has_shared = config->getNumViews(library::VIEW_SHARED, display) > 0;
        if (views.size() == static_cast<std::size_t>(count) &&
            (!has_shared ||
             (is_view_at(config, display, views, 0) && is_view_at(config, display, views, views.size() - 1))))
            return views;
    }
    std::vector<std::string> views;
    for (int i = 0; i < count; ++i)
        views.emplace_back(config->getView(display, i));
    return views;
}

void add_display(const ConfigRcPtr& config, const char* display, const char* view, const char* color_space,
                 const char* looks) {
    guarded([&] { config->addDisplayView(display, view, color_space, looks); });
}

} // namespace ocio
