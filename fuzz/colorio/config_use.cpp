#include "fuzz/colorio/config_use.h"

#include <algorithm>

#include "colorio/color_io_constants.h"
#include "colorio/color_io_inspection.h"
#include "colorio/color_io_manager.h"
#include "colorio/color_io_transforms.h"
#include "colorio/ocio/source_files.h"
#include "fuzz/colorio/conversion_use.h"
#include "fuzz/colorio/fuzz_module.h"

namespace {

/// Conversions take most of the time; few of them find the same errors as many.
constexpr unsigned int MAX_CONVERTED = 4;

CoreString bare_name(const CoreString& label) {
    return CoreString::after_first(label, ColorIOManager::FAMILY_SEPARATOR);
}

void look_up_color_spaces(const ColorIOManager& manager) {
    for (unsigned int i = 0;; ++i) {
        const CoreString label = manager.get_color_space_name(i);
        if (label.is_empty())
            break;
        require(manager.color_space_exists(label));
        const unsigned int last = manager.get_color_space_index(label);
        require(last != NOT_FOUND && last >= i);
        const CoreString same = bare_name(manager.get_color_space_name(last));
        require(same.get_lower_case() == bare_name(label).get_lower_case());
        require(bare_name(manager.get_full_color_space_name(bare_name(label))) == bare_name(label));
    }
    for (int role = 0; role < ColorIOManager::ROLE_COUNT; ++role)
        manager.get_role_color_space(role);
}

void look_up_views(const ColorIOManager& manager) {
    for (const CoreString& label : manager.get_display_view_names()) {
        CoreString display, view;
        require(manager.display_view_exists(label));
        require(manager.get_display_view(label, display, view));
        require(display + ColorIOManager::DISPLAY_SEPARATOR + view == label);
        manager.get_color_space_from_display_view(label);
        ColorIOInspection::get_view(display, view);
    }
    CoreString display, view;
    require(manager.get_default_display_view(display, view) ==
            !manager.get_default_display_view().is_empty());
}

void check_entries() {
    const CoreVector<ColorIOInspection::ColorSpace> spaces = ColorIOInspection::get_color_spaces();
    const CoreString first = spaces.is_empty() ? CoreString() : spaces[0].name;
    ColorIOConverter converter;
    for (unsigned int i = 0; i < std::min(spaces.get_count(), MAX_CONVERTED); ++i)
        ColorIOTransforms::configure(converter, spaces[i].name, first);
    for (const auto& transform : ColorIOInspection::get_named_transforms())
        require(transform.has_forward || transform.has_inverse);
    const CoreVector<CoreString> looks = ColorIOInspection::get_looks();
    for (unsigned int i = 0; i < std::min(looks.get_count(), MAX_CONVERTED); ++i)
        ColorIOTransforms::configure_looks(converter, first, looks[i]);
    const CoreVector<CoreString> view_transforms = ColorIOInspection::get_view_transforms();
    for (unsigned int i = 0; i < std::min(view_transforms.get_count(), MAX_CONVERTED); ++i)
        ColorIOInspection::try_view_transform(view_transforms[i]);
    ColorIOInspection::get_hidden_views();
}

void convert(const ColorIOManager& manager) {
    const CoreBasicArray<CoreString>& spaces = manager.get_color_space_names();
    if (spaces.is_empty())
        return;
    ColorIOConverter converter;
    for (unsigned int i = 1; i < std::min(spaces.get_count(), MAX_CONVERTED); ++i) {
        if (converter.configure(spaces[i], spaces[0]))
            use_converter(converter);
        if (converter.configure(spaces[0], spaces[i]))
            use_converter(converter);
    }
    if (converter.is_enabled())
        use_shaders(converter);
    const CoreBasicArray<CoreString>& views = manager.get_display_view_names();
    for (unsigned int i = 0; i < std::min(views.get_count(), MAX_CONVERTED); ++i) {
        CoreString display, view;
        manager.get_display_view(views[i], display, view);
        if (converter.configure_for_display(spaces[0], display, view) && converter.is_enabled())
            use_converter(converter);
    }
}

} // namespace

bool load_config_file(const CoreString& path) {
    StandaloneApp& app = FuzzModule::get().get_app();
    ColorIOManager& manager = *ColorIOManager::get_instance();
    if (app.get_use_color_space_file() && app.get_color_space_file_path() == path) {
        manager.update_file_config_path();
    } else {
        app.set_color_space_file_path(path);
        app.set_use_color_space_file(true);
    }
    return !manager.is_using_tavelion_config();
}

void use_active_config() {
    const ColorIOManager& manager = *ColorIOManager::get_instance();
    look_up_color_spaces(manager);
    look_up_views(manager);
    check_entries();
    convert(manager);
    ocio::get_source_files(manager.get_config());
}
