#include "colorio/color_io.h"
#include "colorio/color_io_auto_detection.h"
#include "colorio/color_io_constants.h"
#include "colorio/color_io_manager.h"

namespace {

const ColorIOManager& manager() {
    return *ColorIOManager::get_instance();
}

} // namespace

bool ColorIO::color_space_exists(CoreBasicString name) {
    return manager().color_space_exists(name);
}

bool ColorIO::display_view_exists(CoreBasicString name) {
    return manager().display_view_exists(name);
}

unsigned int ColorIO::get_color_space_index(const CoreString& name) {
    return ColorIOManager::get_instance() ? manager().get_color_space_index(name) : NOT_FOUND;
}

CoreString ColorIO::get_color_space_name(unsigned int index) {
    return manager().get_color_space_name(index);
}

const CoreBasicArray<CoreString>& ColorIO::get_color_space_names() {
    return manager().get_color_space_names();
}

CoreString ColorIO::get_full_color_space_name(const CoreString& name) {
    return manager().get_full_color_space_name(name);
}

const CoreBasicArray<CoreString>& ColorIO::get_display_view_names() {
    return manager().get_display_view_names();
}

bool ColorIO::get_display_view(const CoreString& display_view, CoreString& display, CoreString& view) {
    return manager().get_display_view(display_view, display, view);
}

CoreString ColorIO::get_default_display_view() {
    return manager().get_default_display_view();
}

bool ColorIO::get_default_display_view(CoreString& display, CoreString& view) {
    return manager().get_default_display_view(display, view);
}

CoreString ColorIO::get_color_space_from_display_view(CoreBasicString display_view) {
    return manager().get_color_space_from_display_view(display_view);
}

const CoreString& ColorIO::get_role_color_space(int role) {
    return manager().get_role_color_space(role);
}

const CoreString& ColorIO::get_ROLE_SCENE_LINEAR() {
    return manager().get_ROLE_SCENE_LINEAR();
}

CoreString ColorIO::get_default_color_space_name() {
    return ColorIOManager::s_default_color_space_name;
}

const CoreString& ColorIO::get_default_color_picker_space_name() {
    return manager().get_default_color_picking_space_name();
}

unsigned int ColorIO::get_CDL_index(const CoreString& name) {
    return manager().get_CDL_index(name);
}

CoreString ColorIO::get_CDL_name(unsigned int index) {
    return manager().get_CDL_name(index);
}

CoreString ColorIO::get_default_CDL_name() {
    return ColorIOManager::s_default_CDL_name;
}

bool ColorIO::is_legacy_builtin_color_space(CoreBasicString name) {
    return manager().is_legacy_builtin_color_space(name);
}

CoreString ColorIO::convert_legacy_builtin_color_space(CoreBasicString name) {
    return manager().convert_legacy_builtin_color_space(name);
}

CoreString ColorIO::convert_legacy_preferences_display_color_space_to_display_view(CoreBasicString name) {
    return manager().convert_legacy_preferences_display_color_space_to_display_view(name);
}

CoreString ColorIO::convert_legacy_widget_display_color_space_to_display_view(CoreBasicString name) {
    return manager().convert_legacy_widget_display_color_space_to_display_view(name);
}

CoreString ColorIO::get_default_color_space_from_ext(const CoreString& extension) {
    return ColorIOAutoDetection::get_instance()->get_default_color_space_from_extension(extension);
}
