#include "colorio/ocio/config.h"

#include "colorio/ocio/error.h"
#include "colorio/ocio/guarded.h"

namespace ocio {

std::string get_display_color_space_name(const ConstConfigRcPtr& config, const char* display,
                                         const char* view) {
    return config->getDisplayColorSpaceName(display, view);
}

std::string get_display_color_space_name(const ConstConfigRcPtr& config, const char* display,
                                         const char* view, const std::unordered_set<std::string>&) {
    return get_display_color_space_name(config, display, view);
}

std::vector<std::string> list_views(const ConstConfigRcPtr& config, const char* display) {
    std::vector<std::string> views;
    for (int i = 0; i < config->getNumViews(display); ++i)
        views.emplace_back(config->getView(display, i));
    return views;
}

void add_display(const ConfigRcPtr& config, const char* display, const char* view, const char* color_space,
                 const char* looks) {
    if (!*display || !*view)
        throw_error(diagnostics::Code::VIEW_UNKNOWN, "a view needs a name and a display");
    guarded([&] { config->addDisplay(display, view, color_space, looks); });
}

} // namespace ocio
