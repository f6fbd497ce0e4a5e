#include "colorio/color_io.h"
#include "colorio/color_io_auto_detection.h"
#include "colorio/color_io_constants.h"
#include "colorio/color_io_manager.h"
#include "colorio/facade/module_boundary.h"

namespace {

/// Calls `question` with the manager; `failure` without a manager and after an exception.
template <class Failure, class Question>
std::decay_t<Failure> ask_manager(Failure&& failure, Question&& question) {
    const ColorIOManager* const manager = ColorIOManager::get_instance();
    if (!manager)
        return std::forward<Failure>(failure);
    return at_boundary(std::forward<Failure>(failure), [&] { return question(*manager); });
}

using Names = CoreBasicArray<CoreString>;

/// Used without a manager.
const Names& no_names() {
    static const CoreVector<CoreString> names;
    return names;
}

const CoreString& no_name() {
    static const CoreString name;
    return name;
}

} // namespace

bool ColorIO::color_space_exists(CoreBasicString name) {
    return ask_manager(false, [&](auto& manager) { return manager.color_space_exists(name); });
}

bool ColorIO::display_view_exists(CoreBasicString name) {
    return ask_manager(false, [&](auto& manager) { return manager.display_view_exists(name); });
}

unsigned int ColorIO::get_color_space_index(const CoreString& name) {
    return ask_manager(NOT_FOUND, [&](auto& manager) { return manager.get_color_space_index(name); });
}

CoreString ColorIO::get_color_space_name(unsigned int index) {
    return ask_manager(CoreString(), [&](auto& manager) { return manager.get_color_space_name(index); });
}

const CoreBasicArray<CoreString>& ColorIO::get_color_space_names() {
    return *ask_manager(&no_names(), [](auto& manager) { return &manager.get_color_space_names(); });
}

CoreString ColorIO::get_full_color_space_name(const CoreString& name) {
    return ask_manager(CoreString(), [&](auto& manager) { return manager.get_full_color_space_name(name); });
}

const CoreBasicArray<CoreString>& ColorIO::get_display_view_names() {
    return *ask_manager(&no_names(), [](auto& manager) { return &manager.get_display_view_names(); });
}

bool ColorIO::get_display_view(const CoreString& display_view, CoreString& display, CoreString& view) {
    return ask_manager(false,
                       [&](auto& manager) { return manager.get_display_view(display_view, display, view); });
}

CoreString ColorIO::get_default_display_view() {
    return ask_manager(CoreString(), [](auto& manager) { return manager.get_default_display_view(); });
}

bool ColorIO::get_default_display_view(CoreString& display, CoreString& view) {
    return ask_manager(false, [&](auto& manager) { return manager.get_default_display_view(display, view); });
}

CoreString ColorIO::get_color_space_from_display_view(CoreBasicString display_view) {
    return ask_manager(
        CoreString(), [&](auto& manager) { return manager.get_color_space_from_display_view(display_view); });
}

const CoreString& ColorIO::get_role_color_space(int role) {
    return *ask_manager(&no_name(), [&](auto& manager) { return &manager.get_role_color_space(role); });
}

const CoreString& ColorIO::get_ROLE_SCENE_LINEAR() {
    return *ask_manager(&no_name(), [](auto& manager) { return &manager.get_ROLE_SCENE_LINEAR(); });
}

CoreString ColorIO::get_default_color_space_name() {
    return at_boundary(CoreString(), [] { return ColorIOManager::s_default_color_space_name; });
}

const CoreString& ColorIO::get_default_color_picker_space_name() {
    return *ask_manager(&no_name(),
                        [](auto& manager) { return &manager.get_default_color_picking_space_name(); });
}

unsigned int ColorIO::get_CDL_index(const CoreString& name) {
    return ask_manager(NOT_FOUND, [&](auto& manager) { return manager.get_CDL_index(name); });
}

CoreString ColorIO::get_CDL_name(unsigned int index) {
    return ask_manager(CoreString(), [&](auto& manager) { return manager.get_CDL_name(index); });
}

CoreString ColorIO::get_default_CDL_name() {
    return at_boundary(CoreString(), [] { return ColorIOManager::s_default_CDL_name; });
}

bool ColorIO::is_legacy_builtin_color_space(CoreBasicString name) {
    return ask_manager(false, [&](auto& manager) { return manager.is_legacy_builtin_color_space(name); });
}

CoreString ColorIO::convert_legacy_builtin_color_space(CoreBasicString name) {
    return ask_manager(CoreString(),
                       [&](auto& manager) { return manager.convert_legacy_builtin_color_space(name); });
}

CoreString ColorIO::convert_legacy_preferences_display_color_space_to_display_view(CoreBasicString name) {
    return ask_manager(CoreString(), [&](auto& manager) {
        return manager.convert_legacy_preferences_display_color_space_to_display_view(name);
    });
}

CoreString ColorIO::convert_legacy_widget_display_color_space_to_display_view(CoreBasicString name) {
    return ask_manager(CoreString(), [&](auto& manager) {
        return manager.convert_legacy_widget_display_color_space_to_display_view(name);
    });
}

CoreString ColorIO::get_default_color_space_from_ext(const CoreString& extension) {
    return at_boundary(CoreString(), [&] {
        ColorIOAutoDetection* const detector = ColorIOAutoDetection::get_instance();
        return detector ? detector->get_default_color_space_from_extension(extension) : CoreString();
    });
}
