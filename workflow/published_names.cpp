#include "workflow/published_names.h"

#include <string_view>
#include <unordered_map>
#include <utility>

#include "colorio/color_io.h"
#include "colorio/color_io_inspection.h"
#include "colorio/color_io_manager.h"

namespace workflow {

namespace {

constexpr char SCENE_LINEAR_ROLE[] = "scene_linear";

std::string to_string(const CoreBasicString& text) {
    return std::string(text.view());
}

template <class Texts>
std::vector<std::string> to_strings(const Texts& texts) {
    std::vector<std::string> strings;
    for (const CoreString& text : texts)
        strings.push_back(to_string(text));
    return strings;
}

EntryFacts get_facts(const ColorIOInspection::Entry& entry) {
    return {to_string(entry.encoding), to_strings(entry.categories), to_strings(entry.aliases),
            to_string(entry.description)};
}

void describe_space(const ColorIOInspection::ColorSpace& entry, DescribedSpace& space) {
    space.facts = get_facts(entry);
    space.is_display_referred = entry.is_display_referred;
    space.is_data = entry.is_data;
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

std::vector<DescribedSpace> get_described_spaces() {
    const CoreVector<ColorIOInspection::ColorSpace> entries = ColorIOInspection::get_color_spaces();
    std::unordered_map<std::string_view, const ColorIOInspection::ColorSpace*> by_name;
    for (const ColorIOInspection::ColorSpace& entry : entries)
        by_name.emplace(entry.name.view(), &entry);
    std::vector<DescribedSpace> spaces;
    for (PublishedSpace& published : get_published_spaces()) {
        DescribedSpace& space = spaces.emplace_back();
        static_cast<PublishedSpace&>(space) = std::move(published);
        if (const auto found = by_name.find(space.name); found != by_name.end())
            describe_space(*found->second, space);
    }
    return spaces;
}

std::vector<DescribedSpace> get_inactive_spaces() {
    std::vector<DescribedSpace> spaces;
    for (const ColorIOInspection::ColorSpace& entry : ColorIOInspection::get_color_spaces()) {
        if (entry.is_active)
            continue;
        DescribedSpace& space = spaces.emplace_back();
        space.name = to_string(entry.name);
        space.family = to_string(entry.family);
        space.label = make_label(space.family, space.name);
        describe_space(entry, space);
    }
    return spaces;
}

std::vector<DescribedTransform> get_named_transforms() {
    std::vector<DescribedTransform> transforms;
    for (const ColorIOInspection::NamedTransform& entry : ColorIOInspection::get_named_transforms())
        transforms.push_back({to_string(entry.name), to_string(entry.family), get_facts(entry),
                              entry.has_forward, entry.has_inverse, entry.is_active});
    return transforms;
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

std::vector<std::string> get_published_looks() {
    return to_strings(ColorIOInspection::get_looks());
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

const char* get_reference_name(const DescribedSpace& space) {
    return space.is_display_referred ? "display" : "scene";
}

std::string describe_kind(const DescribedSpace& space, bool with_reference) {
    const std::string reference = with_reference ? std::string(get_reference_name(space)) + "-referred" : "";
    if (!space.is_data)
        return reference;
    return reference.empty() ? "data" : reference + ", data";
}

const char* describe_directions(const DescribedTransform& transform) {
    if (transform.has_forward && transform.has_inverse)
        return "both";
    return transform.has_forward ? "forward" : "inverse";
}

std::string describe_flags(const PublishedView& view) {
    if (view.is_default)
        return view.is_shared ? "default, shared" : "default";
    return view.is_shared ? "shared" : "";
}

std::string make_label(const std::string& family, const std::string& name) {
    return family.empty() ? name : family + ColorIOManager::FAMILY_SEPARATOR + name;
}

std::string remove_family(const std::string& label) {
    return label.substr(label.find(ColorIOManager::FAMILY_SEPARATOR) + 1);
}

} // namespace workflow
