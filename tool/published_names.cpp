#include "tool/published_names.h"

#include <algorithm>

#include <fmt/format.h>

#include "colorio/color_io.h"
#include "colorio/color_io_manager.h"
#include "tool/exit_code.h"
#include "tool/nearest_names.h"

namespace tool {

namespace {

constexpr char SCENE_LINEAR_ROLE[] = "scene_linear";

std::string to_string(const CoreBasicString& text) {
    return std::string(text.view());
}

/// Nothing when the label of the view is all that the module can tell.
std::string get_color_space_of_view(const CoreString& label) {
    const CoreString color_space = ColorIO::get_color_space_from_display_view(label);
    return color_space == label ? "" : to_string(color_space);
}

template <class Item, class GetName>
std::vector<std::string> collect(const std::vector<Item>& items, const GetName& get_name) {
    std::vector<std::string> names;
    for (const Item& item : items)
        names.push_back(get_name(item));
    return names;
}

/// The full label of a colour space that a role names; empty when it is no role.
std::string resolve_role(const std::string& name) {
    for (const PublishedRole& role : get_published_roles())
        if (role.role == name)
            return to_string(ColorIO::get_full_color_space_name(role.color_space.c_str()));
    return "";
}

} // namespace

std::vector<PublishedSpace> get_published_spaces() {
    const CoreBasicArray<CoreString>& names = ColorIO::get_color_space_names();
    std::vector<PublishedSpace> spaces;
    for (unsigned int i = 0; i < names.get_count(); ++i) {
        PublishedSpace space;
        space.label = to_string(ColorIO::get_color_space_name(i));
        space.name = to_string(names[i]);
        if (space.label.size() > space.name.size())
            space.family = space.label.substr(0, space.label.size() - space.name.size() - 1);
        spaces.push_back(std::move(space));
    }
    return spaces;
}

std::vector<PublishedView> get_published_views() {
    const std::string default_view = to_string(ColorIO::get_default_display_view());
    std::vector<PublishedView> views;
    for (const CoreString& label : ColorIO::get_display_view_names()) {
        CoreString display, view;
        ColorIO::get_display_view(label, display, view);
        views.push_back({to_string(label), to_string(display), to_string(view),
                         get_color_space_of_view(label), to_string(label) == default_view});
    }
    return views;
}

std::vector<PublishedRole> get_published_roles() {
    std::vector<PublishedRole> roles = {{SCENE_LINEAR_ROLE, to_string(ColorIO::get_ROLE_SCENE_LINEAR())}};
    for (int role = 0; role < ColorIOManager::ROLE_COUNT; ++role)
        roles.push_back({ColorIOManager::get_role_name(static_cast<ColorIOManager::Role>(role)),
                         to_string(ColorIO::get_role_color_space(role))});
    return roles;
}

std::string resolve_color_space(const std::string& name, const std::string& config_name) {
    const std::vector<PublishedSpace> spaces = get_published_spaces();
    const auto is_meant = [&](const PublishedSpace& space) {
        return space.label == name || space.name == name;
    };
    const auto found = std::find_if(spaces.begin(), spaces.end(), is_meant);
    if (found != spaces.end())
        return found->label;
    const std::string of_role = resolve_role(name);
    if (!of_role.empty() && ColorIO::color_space_exists(of_role.c_str()))
        return of_role;

    // Names that lack only their family are as near as those with it.
    const bool with_family = name.find(ColorIOManager::FAMILY_SEPARATOR) != std::string::npos;
    const auto candidates =
        collect(spaces, [&](const PublishedSpace& space) { return with_family ? space.label : space.name; });
    throw CommandError(
        fmt::format("no colour space '{}' in {}{}", name, config_name, did_you_mean(name, candidates)));
}

PublishedView resolve_view(const std::string& display, const std::string& view,
                           const std::string& config_name) {
    const std::vector<PublishedView> views = get_published_views();
    const auto is_meant = [&](const PublishedView& candidate) {
        return display.empty() ? candidate.label == view
                               : candidate.display == display && candidate.view == view;
    };
    const auto found = std::find_if(views.begin(), views.end(), is_meant);
    if (found != views.end())
        return *found;
    const std::string wanted = display.empty() ? view : display + ColorIOManager::DISPLAY_SEPARATOR + view;
    const auto candidates = collect(views, [](const PublishedView& candidate) { return candidate.label; });
    throw CommandError(
        fmt::format("no view '{}' in {}{}", wanted, config_name, did_you_mean(wanted, candidates)));
}

} // namespace tool
