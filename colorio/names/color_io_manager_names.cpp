#include <string>
#include <unordered_set>
#include <utility>

#include "colorio/color_io.h"
#include "colorio/color_io_constants.h"
#include "colorio/color_io_manager.h"
#include "colorio/facade/color_io_log.h"
#include "colorio/facade/module_boundary.h"
#include "colorio/names/color_space_name_index.h"
#include "colorio/names/display_view_walk.h"
#include "colorio/names/label_list.h"
#include "colorio/names/menu_sleep.h"
#include "colorio/names/published_names.h"
#include "colorio/ocio/color_space.h"
#include "colorio/ocio/config.h"
#include "host/of/of_enum.h"

namespace {

/// `family_of_all` is the family of every color space where all have the same one (else null): OpenColorIO
/// searches all color spaces for each family that is asked for.
LabelList list_color_spaces(const ocio::ConstConfigRcPtr& config, const char* family_of_all,
                            const OfEnum& published, CoreVector<CoreString>& names, PublishedSpaces& spaces) {
    LabelList list;
    const char separator = *published.get_separator().get_data();
    const int count = ocio::get_num_color_spaces(config);
    list.reserve(static_cast<unsigned int>(count) + 1); // and one that is put in front of them
    names.reserve(static_cast<unsigned int>(count));
    for (int i = 0; i < count; ++i) {
        const CoreString name = ocio::get_color_space_name_by_index(config, i);
        ocio::ConstColorSpaceRcPtr space;
        if (!family_of_all)
            space = ocio::get_color_space(config, name.get_data());
        const CoreString family = space ? ocio::get_family(space) : family_of_all;
        const CoreString label = family.is_empty() ? name : family + separator + name;
        if (list.is_new(label, published)) {
            names.append(name);
            spaces.add(name, std::move(space));
            list.append(label, names.get_count());
        } else {
            log_message(LOG_WARNING, "Color Management: duplicate color space '", label,
                        "' is already defined in the current configuration.\n");
            report(LOG_WARNING, diagnostics::Code::NAME_DUPLICATE, label,
                   "the color space '" + std::string(label.view()) + "' is already defined");
        }
    }
    return list;
}

} // namespace

bool ColorIOManager::update_enums_and_lists() {
    if (!app) {
        forget_names();
        color_space_names.append(BUILTIN_LINEAR);
        published_spaces->add(BUILTIN_LINEAR, ocio::ConstColorSpaceRcPtr());
        display_view_names.append("default.linear");
        published_views->add("default.linear", {"default", "linear"});
        return false;
    }
    if (!config || !color_space_enum)
        return false;

    const MenuSleep sleep(
        {view_transform_enum, color_space_enum, internal_color_space_enum, color_picking_enum});
    forget_names();
    color_space_enum->remove_all_values();
    color_space_enum->set_separator(FAMILY_SEPARATOR);
    LabelList spaces = list_color_spaces(config, is_using_tavelion_config() ? BUILTIN_FAMILY.data : nullptr,
                                         *color_space_enum, color_space_names, *published_spaces);
    color_space_enum->add_values(spaces.labels, spaces.values);
    name_index.reset();

    color_picking_enum->remove_all_values();
    spaces.labels.insert(0, ColorIO::s_default_color_picking);
    spaces.values.insert(0, 0);
    color_picking_enum->add_values(spaces.labels, spaces.values);

    internal_color_space_enum->remove_all_values();
    spaces.labels[0] = ColorIO::s_default_scene_linear;
    internal_color_space_enum->add_values(spaces.labels, spaces.values);

    publish_views();
    return true;
}

void ColorIOManager::forget_names() {
    auto spaces = std::make_shared<PublishedSpaces>(config);
    forget_views();
    published_spaces = std::move(spaces);
    color_space_names.remove_all();
}

void ColorIOManager::forget_views() {
    published_views = std::make_shared<PublishedViews>(config);
    display_view_names.remove_all();
}

void ColorIOManager::publish_views() {
    view_transform_enum->remove_all_values();
    LabelList views;
    const bool is_builtin = is_using_tavelion_config(); // Its views show the color spaces of their names.
    std::unordered_set<std::string> own_names;
    if (!is_builtin)
        own_names = ocio::list_own_names(config);
    find_view(config, [&](const char* display, const char* view) {
        const CoreString label = CoreString(display) + DISPLAY_SEPARATOR + view;
        const CoreString color_space =
            is_builtin ? view : ocio::get_display_color_space_name(config, display, view, own_names).c_str();
        if (views.is_new(label, *color_space_enum)) {
            display_view_names.append(label);
            published_views->add(label, {display, view});
            views.append(label, find_color_space(color_space));
        } else {
            log_message(LOG_WARNING, "Color Management: duplicate view transform '", color_space,
                        "' is already defined in the current configuration.\n");
            report(LOG_WARNING, diagnostics::Code::NAME_DUPLICATE, label,
                   "the view '" + std::string(label.view()) + "' is already defined");
        }
        return false;
    });
    view_transform_enum->add_values(views.labels, views.values);
}

std::shared_ptr<const ColorSpaceNameIndex> ColorIOManager::get_name_index() const {
    if (!app || !color_space_enum)
        return nullptr;
    if (!name_index || !name_index->is_current(*color_space_enum))
        name_index = std::make_shared<ColorSpaceNameIndex>(*color_space_enum);
    return name_index;
}

bool ColorIOManager::color_space_exists(CoreBasicString name) const {
    return at_boundary(false, [&] {
        return app && color_space_enum &&
               color_space_enum->find_label_index(name) < color_space_enum->get_value_count();
    });
}

bool ColorIOManager::is_color_space_name(const CoreBasicString& name) const {
    return at_boundary(false, [&] { return published_spaces && published_spaces->contain(name); });
}

bool ColorIOManager::display_view_exists(CoreBasicString label) const {
    return at_boundary(false, [&] { return published_views && published_views->find(label); });
}

const char& ColorIOManager::get_color_space_enum_separator() const {
    return color_space_enum ? *color_space_enum->get_separator().get_data() : FAMILY_SEPARATOR;
}

unsigned int ColorIOManager::find_color_space(const CoreString& name) const {
    const auto index = get_name_index();
    return index ? index->find_last_ignoring_case(name) : NOT_FOUND;
}

unsigned int ColorIOManager::get_color_space_index(CoreString name) const {
    return at_boundary(NOT_FOUND, [&] { return find_color_space(name); });
}

CoreString ColorIOManager::get_color_space_name(unsigned int index) const {
    if (!app || !color_space_enum || index >= color_space_enum->get_value_count())
        return CoreString();
    return at_boundary(CoreString(), [&] { return color_space_enum->get_label(index); });
}

CoreString ColorIOManager::get_full_color_space_name(CoreString name) const {
    return at_boundary(std::move(name), [&] { // Used after the move only when that fails.
        const auto index = get_name_index();
        if (!index || color_space_enum->get_separator().is_empty())
            return name;
        const unsigned int position = index->find_first_exact(name);
        return position == NOT_FOUND ? name : color_space_enum->get_label(position);
    });
}

CoreString ColorIOManager::get_color_space_from_display_view(CoreBasicString label) const {
    return at_boundary(CoreString(), [&]() -> CoreString {
        if (!view_transform_enum || !color_space_enum)
            return label;
        const unsigned int position = view_transform_enum->get_value(label);
        if (position >= color_space_enum->get_value_count() ||
            position == view_transform_enum->get_invalid_value())
            return label;
        return color_space_enum->get_label(position);
    });
}

bool ColorIOManager::get_display_view(CoreBasicString label, CoreString& display, CoreString& view) const {
    if (!config || !display_view_exists(label))
        return false;
    return at_boundary(false, [&] {
        if (published_views->are_of(config)) {
            PublishedViews::View found = *published_views->find(label);
            display = std::move(found.display);
            view = std::move(found.name);
            return true;
        }
        return find_view(config, [&](const char* candidate_display, const char* candidate_view) {
            if (CoreString(candidate_display) + DISPLAY_SEPARATOR + candidate_view != label)
                return false;
            CoreString found = candidate_view;
            display = candidate_display;
            view = std::move(found);
            return true;
        });
    });
}

CoreString ColorIOManager::get_default_display_view() const {
    return at_boundary(CoreString(), [&] {
        CoreString display, view;
        return find_default_display_view(display, view) ? display + DISPLAY_SEPARATOR + view : CoreString();
    });
}

bool ColorIOManager::get_default_display_view(CoreString& display, CoreString& view) const {
    return at_boundary(false, [&] { return find_default_display_view(display, view); });
}

bool ColorIOManager::find_default_display_view(CoreString& display, CoreString& view) const {
    if (!config)
        return false;
    display = ocio::get_default_display(config);
    view = ocio::get_default_view(config, display.get_data());
    return !display.is_empty() && !view.is_empty();
}
