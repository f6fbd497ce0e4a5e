#include "workflow/name_resolution.h"

#include <strings.h>

#include <algorithm>
#include <optional>

#include <fmt/format.h>

#include "colorio/color_io.h"
#include "colorio/color_io_inspection.h"
#include "colorio/color_io_manager.h"
#include "tool/console.h"
#include "tool/exit_code.h"
#include "workflow/nearest_names.h"

namespace tool {

namespace {

bool is_same(const std::string& a, const std::string& b) {
    return a == b;
}

/// As the colour library compares names.
bool is_same_but_for_case(const std::string& a, const std::string& b) {
    return strcasecmp(a.c_str(), b.c_str()) == 0;
}

using Comparison = bool (*)(const std::string& a, const std::string& b);

/// The full label of a colour space that a role names; empty when it is no role or its space not published.
std::string resolve_role(const std::string& name, Comparison matches) {
    for (const PublishedRole& role : get_published_roles())
        if (matches(role.role, name)) {
            const CoreString label = ColorIO::get_full_color_space_name(role.color_space.c_str());
            return ColorIO::color_space_exists(label) ? label.get_data() : "";
        }
    return "";
}

std::optional<ResolvedSpace> find_published(const std::vector<PublishedSpace>& spaces,
                                            const std::string& name, Comparison matches) {
    const auto found = std::find_if(spaces.begin(), spaces.end(), [&](const PublishedSpace& space) {
        return matches(space.label, name) || matches(space.name, name);
    });
    if (found != spaces.end())
        return ResolvedSpace{found->label,
                             matches(found->label, name) ? NameKind::LABEL : NameKind::NAME_WITHOUT_FAMILY};
    const std::string of_role = resolve_role(name, matches);
    if (!of_role.empty())
        return ResolvedSpace{of_role, NameKind::ROLE};
    return std::nullopt;
}

bool has_alias(const ColorIOInspection::Entry& entry, const std::string& name) {
    return std::any_of(entry.aliases.begin(), entry.aliases.end(),
                       [&](const CoreString& alias) { return is_same_but_for_case(alias.get_data(), name); });
}

bool is_called(const ColorIOInspection::Entry& entry, const std::string& name) {
    return is_same_but_for_case(entry.name.get_data(), name) || has_alias(entry, name) ||
           is_same_but_for_case(make_label(entry.family.get_data(), entry.name.get_data()), name);
}

/// "'old scan'", or "'old scan', another name of 'unpublished',".
std::string quote_name(const ColorIOInspection::Entry& entry, const std::string& name) {
    return has_alias(entry, name) ? fmt::format("'{}', another name of '{}',", name, entry.name.get_data())
                                  : fmt::format("'{}'", entry.name.get_data());
}

/// Throws where the name belongs to an entry of the configuration that conversions cannot take.
void refuse_unpublished(const std::string& name, const std::string& config_name) {
    for (const ColorIOInspection::ColorSpace& space : ColorIOInspection::get_color_spaces())
        if (!space.is_active && is_called(space, name))
            throw CommandError(fmt::format(
                "{} is an inactive colour space of {}, and conversions take active ones only; the list "
                "'inactive_colorspaces' of the configuration or the variable OCIO_INACTIVE_COLORSPACES names "
                "it",
                quote_name(space, name), config_name));
    for (const ColorIOInspection::NamedTransform& transform : ColorIOInspection::get_named_transforms())
        if (is_called(transform, name))
            throw CommandError(
                fmt::format("{} is a named transform of {} and no colour space; it converts where "
                            "a view shows it, and nowhere else",
                            quote_name(transform, name), config_name));
}

std::optional<ResolvedSpace> find_by_alias(const std::string& name) {
    for (const ColorIOInspection::ColorSpace& space : ColorIOInspection::get_color_spaces())
        if (space.is_active && has_alias(space, name))
            return ResolvedSpace{make_label(space.family.get_data(), space.name.get_data()), NameKind::ALIAS};
    return std::nullopt;
}

template <class Item, class GetName>
std::vector<std::string> collect(const std::vector<Item>& items, const GetName& get_name) {
    std::vector<std::string> names;
    for (const Item& item : items)
        names.push_back(get_name(item));
    return names;
}

std::vector<const PublishedView*> find_views(const std::vector<PublishedView>& views,
                                             const std::string& display, const std::string& view,
                                             Comparison matches) {
    std::vector<const PublishedView*> found;
    for (const PublishedView& candidate : views)
        if (display.empty() ? matches(candidate.label, view)
                            : matches(candidate.display, display) && matches(candidate.view, view))
            found.push_back(&candidate);
    return found;
}

std::string join_view(const std::string& display, const std::string& view) {
    return display.empty() ? view : display + ColorIOManager::DISPLAY_SEPARATOR + view;
}

} // namespace

const char* describe_kind(NameKind kind) {
    switch (kind) {
    case NameKind::LABEL:
        return "its label";
    case NameKind::NAME_WITHOUT_FAMILY:
        return "the name without its family";
    case NameKind::ROLE:
        return "a role";
    case NameKind::OTHER_CASE:
        return "but for upper and lower case";
    case NameKind::ALIAS:
        break;
    }
    return "another name of it";
}

ResolvedSpace resolve_color_space(const std::string& name, const std::string& config_name) {
    const std::vector<PublishedSpace> spaces = get_published_spaces();
    if (const auto found = find_published(spaces, name, is_same))
        return *found;
    if (const auto found = find_published(spaces, name, is_same_but_for_case))
        return {found->label, NameKind::OTHER_CASE};
    if (const auto found = find_by_alias(name))
        return *found;
    refuse_unpublished(name, config_name);

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
    const auto exact = find_views(views, display, view, is_same);
    if (!exact.empty())
        return *exact.front();
    const auto similar = find_views(views, display, view, is_same_but_for_case);
    if (similar.size() == 1)
        return *similar.front();
    const std::string wanted = join_view(display, view);
    const std::vector<PublishedView> hidden_views = get_hidden_views();
    const auto hidden = find_views(hidden_views, display, view, is_same_but_for_case);
    if (similar.empty() && !hidden.empty())
        throw CommandError(
            fmt::format("the view '{}' of {} is inactive: the lists of active displays and views, in "
                        "the configuration or the environment, hide it",
                        hidden.front()->label, config_name));
    const auto candidates = collect(views, [](const PublishedView& candidate) { return candidate.label; });
    throw CommandError(
        fmt::format("no view '{}' in {}{}", wanted, config_name, did_you_mean(wanted, candidates)));
}

void note_meaning(const std::string& name, const ResolvedSpace& found, Console& console) {
    if (found.kind == NameKind::ALIAS)
        console.note(fmt::format("'{}' is another name of '{}'", name, found.label));
    else if (found.kind == NameKind::OTHER_CASE)
        console.note(fmt::format("'{}' is taken for '{}'", name, found.label));
}

void note_meaning(const std::string& display, const std::string& name, const PublishedView& found,
                  Console& console) {
    const std::string given = join_view(display, name);
    if (given != found.label)
        console.note(fmt::format("'{}' is taken for the view '{}'", given, found.label));
}

} // namespace tool
