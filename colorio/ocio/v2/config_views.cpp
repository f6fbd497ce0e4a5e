#include "colorio/ocio/config.h"

#include <cstdlib>
#include <string_view>

#include "colorio/ocio/guarded.h"

namespace ocio {

namespace {

/// Used as the color space of a shared view that shows the color space with the name of its display.
constexpr std::string_view USE_DISPLAY_NAME = "<USE_DISPLAY_NAME>";

/// Displays with no more views than this are asked for each of them.
constexpr int FEW_VIEWS = 16;

/// The display's own views, then its shared ones: the library's order as long as no list of active views
/// chooses among them.
std::vector<std::string> list_all_views(const ConstConfigRcPtr& config, const char* display) {
    std::vector<std::string> views;
    for (const library::ViewType type : {library::VIEW_DISPLAY_DEFINED, library::VIEW_SHARED})
        for (int i = 0; i < config->getNumViews(type, display); ++i)
            views.emplace_back(config->getView(type, display, i));
    return views;
}

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
    const ConstColorSpaceRcPtr space = config->getColorSpace(name);
    return space && !config->hasRole(name) ? space->getName() : name;
}

} // namespace

std::string get_display_color_space_name(const ConstConfigRcPtr& config, const char* display,
                                         const char* view) {
    return get_display_color_space_name(config, display, view, {});
}

std::string get_display_color_space_name(const ConstConfigRcPtr& config, const char* display,
                                         const char* view, const std::unordered_set<std::string>& own_names) {
    // The library finds shared views even without a display.
    if (!*display || !*view)
        return {};
    const char* name = config->getDisplayViewColorSpaceName(display, view);
    if (name == USE_DISPLAY_NAME)
        name = display;
    return own_names.count(name) != 0 ? name : without_alias(config, name);
}

/// The library collects all views of a display again for each lookup by position.
std::vector<std::string> list_views(const ConstConfigRcPtr& config, const char* display) {
    const int count = config->getNumViews(display);
    if (count > FEW_VIEWS && !has_list_of_active_views(config)) {
        std::vector<std::string> views = list_all_views(config, display);
        if (views.size() == static_cast<std::size_t>(count) && is_view_at(config, display, views, 0) &&
            is_view_at(config, display, views, views.size() - 1))
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
