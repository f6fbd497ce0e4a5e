#include "workflow/legacy_names.h"

#include "colorio/color_io.h"

namespace workflow {

LegacyNames find_legacy_names(const std::string& name) {
    const CoreString saved(name.c_str());
    return {ColorIO::is_legacy_builtin_color_space(saved),
            ColorIO::convert_legacy_builtin_color_space(saved).get_data(),
            ColorIO::convert_legacy_preferences_display_color_space_to_display_view(saved).get_data(),
            ColorIO::convert_legacy_widget_display_color_space_to_display_view(saved).get_data()};
}

} // namespace workflow
