#include "colorio/color_io_constants.h"
#include "colorio/color_io_manager.h"
#include "colorio/facade/module_boundary.h"
#include "colorio/names/display_view_walk.h"
#include "colorio/ocio/config.h"

namespace {

/// Whether a legacy name, without its family, is one of the two display color spaces.
bool is_display_space(const CoreString& tail) {
    return tail == ColorIOManager::BUILTIN_SRGB || tail == ColorIOManager::BUILTIN_CINEON;
}

CoreString get_tail(const CoreBasicString& name) {
    return CoreString::after_first(name, ColorIOManager::FAMILY_SEPARATOR);
}

bool is_legacy_name(const CoreBasicString& name) {
    return name == ColorIOManager::BUILTIN_LINEAR || is_display_space(get_tail(name));
}

} // namespace

bool ColorIOManager::is_legacy_builtin_color_space(CoreBasicString name) const {
    return at_boundary(false, [&] { return is_legacy_name(name); });
}

CoreString ColorIOManager::convert_legacy_builtin_color_space(CoreBasicString name) const {
    return at_boundary(CoreString(), [&] {
        return is_legacy_name(name) ? CoreString(BUILTIN_FAMILY) + FAMILY_SEPARATOR + get_tail(name)
                                    : CoreString();
    });
}

CoreString
ColorIOManager::convert_legacy_widget_display_color_space_to_display_view(CoreBasicString name) const {
    if (!is_using_tavelion_config())
        return CoreString();
    return at_boundary(CoreString(), [&] {
        const CoreString label =
            CoreString(ocio::get_default_display(tavelion_config)) + DISPLAY_SEPARATOR + name;
        return display_view_exists(label) ? label : CoreString();
    });
}

CoreString
ColorIOManager::convert_legacy_preferences_display_color_space_to_display_view(CoreBasicString name) const {
    if (!config)
        return CoreString();
    return at_boundary(CoreString(), [&] { return find_view_of_legacy_name(name); });
}

CoreString ColorIOManager::find_view_of_legacy_name(const CoreBasicString& name) const {
    if (!is_legacy_name(name))
        return find_view_of_color_space(CoreString::after_first(name, get_color_space_enum_separator()));
    if (name == BUILTIN_LINEAR)
        return tavelion_config
                   ? CoreString(ocio::get_default_display(tavelion_config)) + DISPLAY_SEPARATOR + name
                   : CoreString();
    if (name.find(FAMILY_SEPARATOR, 0) == NOT_FOUND)
        return CoreString();
    CoreString candidate = name;
    candidate.replace(FAMILY_SEPARATOR, DISPLAY_SEPARATOR);
    return display_view_exists(candidate) ? candidate : CoreString();
}

CoreString ColorIOManager::find_view_of_color_space(const CoreString& color_space) const {
    // The default display wins for a color space that several displays show.
    CoreString found;
    const auto take_first = [&](const char* display, const char* view) {
        if (color_space != ocio::get_display_color_space_name(config, display, view).c_str())
            return false;
        found = CoreString(display) + DISPLAY_SEPARATOR + view;
        return true;
    };
    if (!find_view_of_display(config, ocio::get_default_display(config), take_first))
        find_view(config, take_first);
    return found;
}
