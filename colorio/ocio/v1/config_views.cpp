#include "colorio/ocio/config.h"

#include "colorio/ocio/guarded.h"

namespace ocio {

std::string get_display_color_space_name(const ConstConfigRcPtr& config, const char* display,
                                         const char* view) {
    return config->getDisplayColorSpaceName(display, view);
}

void add_display(const ConfigRcPtr& config, const char* display, const char* view, const char* color_space,
                 const char* looks) {
    if (!*display || !*view)
        throw Exception("a view needs a name and a display");
    guarded([&] { config->addDisplay(display, view, color_space, looks); });
}

} // namespace ocio
