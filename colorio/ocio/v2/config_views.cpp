#include "colorio/ocio/config.h"

#include <string_view>

#include "colorio/ocio/guarded.h"

namespace ocio {

namespace {

/// A shared view answers this in place of a colour space when it shows the one named like its display.
constexpr std::string_view USE_DISPLAY_NAME = "<USE_DISPLAY_NAME>";

/// The space's own name where `name` is another one of it. A role stays a role, as on 1.x.
std::string without_alias(const ConstConfigRcPtr& config, const char* name) {
    const ConstColorSpaceRcPtr space = config->getColorSpace(name);
    return space && !config->hasRole(name) ? space->getName() : name;
}

} // namespace

std::string get_display_color_space_name(const ConstConfigRcPtr& config, const char* display,
                                         const char* view) {
    // The library answers for shared views even where no display was named.
    if (!*display || !*view)
        return {};
    const char* name = config->getDisplayViewColorSpaceName(display, view);
    return without_alias(config, name == USE_DISPLAY_NAME ? display : name);
}

void add_display(const ConfigRcPtr& config, const char* display, const char* view, const char* color_space,
                 const char* looks) {
    guarded([&] { config->addDisplayView(display, view, color_space, looks); });
}

} // namespace ocio
