#include "workflow/published_names.h"

#include "colorio/color_io.h"
#include "colorio/color_io_inspection.h"
#include "colorio/color_io_manager.h"

namespace workflow {

namespace {

constexpr char SCENE_LINEAR_ROLE[] = "scene_linear";

std::string to_string(const CoreBasicString& text) {
    return std::string(text.view());
}

PublishedView describe_view(const ColorIOInspection::View& facts) {
    PublishedView view;
    view.display = to_string(facts.display);
    view.view = to_string(facts.name);
    view.label = view.display + ColorIOManager::DISPLAY_SEPARATOR + view.view;
    if (!facts.color_space.is_empty())
        view.color_space = make_label(to_string(facts.family), to_string(facts.color_space));
    view.shows_unpublished =
        !view.color_space.empty() && !ColorIO::color_space_exists(view.color_space.c_str());
    view.named_transform = to_string(facts.named_transform);
    view.view_transform = to_string(facts.view_transform);
    view.looks = to_string(facts.looks);
    view.description = to_string(facts.description);
    view.is_shared = facts.is_shared;
    return view;
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
        views.push_back(describe_view(ColorIOInspection::get_view(display, view)));
        views.back().label = to_string(label);
        // Prefer what the module publishes for the view.
        const CoreString color_space = ColorIO::get_color_space_from_display_view(label);
        if (color_space != label) {
            views.back().color_space = to_string(color_space);
            views.back().shows_unpublished = false;
        }
        views.back().is_default = views.back().label == default_view;
    }
    return views;
}

std::vector<PublishedView> get_hidden_views() {
    std::vector<PublishedView> views;
    for (const ColorIOInspection::View& facts : ColorIOInspection::get_hidden_views())
        views.push_back(describe_view(facts));
    return views;
}

std::vector<PublishedRole> get_published_roles() {
    std::vector<PublishedRole> roles;
    const auto add = [&](const char* role, const CoreString& color_space) {
        roles.push_back({role, to_string(color_space), ColorIOInspection::has_role(role)});
    };
    add(SCENE_LINEAR_ROLE, ColorIO::get_ROLE_SCENE_LINEAR());
    for (int role = 0; role < ColorIOManager::ROLE_COUNT; ++role)
        add(ColorIOManager::get_role_name(static_cast<ColorIOManager::Role>(role)),
            ColorIO::get_role_color_space(role));
    return roles;
}

std::string make_label(const std::string& family, const std::string& name) {
    return family.empty() ? name : family + ColorIOManager::FAMILY_SEPARATOR + name;
}

std::string remove_family(const std::string& label) {
    return label.substr(label.find(ColorIOManager::FAMILY_SEPARATOR) + 1);
}

} // namespace workflow
