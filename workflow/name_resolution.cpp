#include "workflow/name_resolution.h"

#include <algorithm>
#include <optional>

#include <fmt/format.h>

#include "colorio/color_io.h"
#include "colorio/color_io_inspection.h"
#include "colorio/color_io_manager.h"
#include "diagnostics/failure.h"
#include "workflow/ignoring_case.h"
#include "workflow/nearest_names.h"
#include "workflow/session.h"

namespace workflow {

namespace {

using namespace diagnostics;

bool is_same(const std::string& a, const std::string& b) {
    return a == b;
}

using Comparison = bool (*)(const std::string& a, const std::string& b);

/// Label of the color space of a role; empty if `name` is not a role or the color space is not published.
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
                       [&](const CoreString& alias) { return equal_ignoring_case(alias.get_data(), name); });
}

bool is_called(const ColorIOInspection::Entry& entry, const std::string& name) {
    return equal_ignoring_case(entry.name.get_data(), name) || has_alias(entry, name) ||
           equal_ignoring_case(make_label(entry.family.get_data(), entry.name.get_data()), name);
}

/// "'old scan'", or "'old scan', an alias of 'unpublished',".
std::string quote_name(const ColorIOInspection::Entry& entry, const std::string& name) {
    return has_alias(entry, name) ? fmt::format("'{}', an alias of '{}',", name, entry.name.get_data())
                                  : fmt::format("'{}'", entry.name.get_data());
}

/// Throws if the name belongs to a named transform.
void refuse_named_transform(const std::string& name, const std::string& config_name) {
    for (const ColorIOInspection::NamedTransform& transform : ColorIOInspection::get_named_transforms())
        if (is_called(transform, name))
            throw Failure(with_hint(make_error(Code::COLOR_SPACE_UNKNOWN,
                                               fmt::format("{} is a named transform of {}, not a color space",
                                                           quote_name(transform, name), config_name),
                                               name),
                                    "apply it as a named transform"));
}

/// By an alias, or by any name of an inactive color space.
std::optional<ResolvedSpace> find_unpublished(const std::string& name) {
    const auto spaces = ColorIOInspection::get_color_spaces();
    for (const bool is_active : {true, false})
        for (const ColorIOInspection::ColorSpace& space : spaces)
            if (space.is_active == is_active && (is_active ? has_alias(space, name) : is_called(space, name)))
                return ResolvedSpace{make_label(space.family.get_data(), space.name.get_data()),
                                     is_active ? NameKind::ALIAS : NameKind::INACTIVE};
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

/// The name behind the family of a label or the display of a view.
std::string get_last_name(const std::string& label) {
    const char separators[] = {ColorIOManager::FAMILY_SEPARATOR, ColorIOManager::DISPLAY_SEPARATOR, '\0'};
    return label.substr(label.find_first_of(separators) + 1);
}

/// Custom color spaces belong to the built-in config.
const Diagnostics& get_space_errors(const Session& session) {
    static const Diagnostics none;
    return session.get_source().kind == ConfigSource::BUILTIN ? session.get_custom_errors() : none;
}

/// The published role of that name whose color space is not published.
std::optional<PublishedRole> find_idle_role(const std::string& name) {
    for (const PublishedRole& role : get_published_roles())
        if (equal_ignoring_case(role.role, name))
            return role;
    return std::nullopt;
}

} // namespace

const char* describe_kind(NameKind kind) {
    switch (kind) {
    case NameKind::LABEL:
        return "a label";
    case NameKind::NAME_WITHOUT_FAMILY:
        return "a name without its family";
    case NameKind::ROLE:
        return "a role";
    case NameKind::OTHER_CASE:
        return "in another case";
    case NameKind::ALIAS:
        return "an alias";
    case NameKind::INACTIVE:
        break;
    }
    return "an inactive color space";
}

std::optional<ResolvedSpace> find_color_space(const std::string& name) {
    const std::vector<PublishedSpace> spaces = get_published_spaces();
    if (const auto found = find_published(spaces, name, is_same))
        return found;
    if (const auto found = find_published(spaces, name, equal_ignoring_case))
        return ResolvedSpace{found->label, NameKind::OTHER_CASE};
    return find_unpublished(name);
}

Diagnostic explain_missing(Code code, const std::string& what, const std::string& name,
                           const Diagnostics& errors, const std::string& hint) {
    const std::string plain = get_last_name(name);
    const auto error = std::find_if(errors.begin(), errors.end(), [&](const Diagnostic& candidate) {
        return !candidate.subject.empty() && (equal_ignoring_case(candidate.subject, name) ||
                                              equal_ignoring_case(candidate.subject, plain));
    });
    if (error == errors.end())
        return with_hint(make_error(code, what, name), hint);
    return add_context(what, {*error}, code);
}

ResolvedSpace resolve_color_space(const std::string& name, const std::string& config_name,
                                  const Diagnostics& errors) {
    if (const auto found = find_color_space(name))
        return *found;
    refuse_named_transform(name, config_name);
    if (const auto role = find_idle_role(name))
        throw Failure(make_error(Code::ROLE_UNKNOWN,
                                 fmt::format("the role '{}' of {} names the color space '{}', which is not "
                                             "available",
                                             role->role, config_name, role->color_space),
                                 name));
    const std::vector<PublishedSpace> spaces = get_published_spaces();

    // A name given without its family is compared without families.
    const bool with_family = name.find(ColorIOManager::FAMILY_SEPARATOR) != std::string::npos;
    std::vector<std::string> candidates =
        collect(spaces, [&](const PublishedSpace& space) { return with_family ? space.label : space.name; });
    for (const PublishedRole& role : get_published_roles())
        candidates.push_back(role.role);
    throw Failure(explain_missing(Code::COLOR_SPACE_UNKNOWN,
                                  fmt::format("no color space '{}' in {}", name, config_name), name, errors,
                                  did_you_mean(name, candidates)));
}

std::string resolve_named_transform(const std::string& name, const std::string& config_name) {
    std::vector<std::string> names;
    for (const ColorIOInspection::NamedTransform& transform : ColorIOInspection::get_named_transforms()) {
        if (is_called(transform, name))
            return transform.name.get_data();
        names.emplace_back(transform.name.get_data());
    }
    throw Failure(with_hint(make_error(Code::NAMED_TRANSFORM_UNKNOWN,
                                       fmt::format("no named transform '{}' in {}", name, config_name), name),
                            did_you_mean(name, names)));
}

PublishedView resolve_view(const std::string& display, const std::string& view,
                           const std::string& config_name, const Diagnostics& errors) {
    const std::vector<PublishedView> views = get_published_views();
    const auto exact = find_views(views, display, view, is_same);
    if (!exact.empty())
        return *exact.front();
    const auto similar = find_views(views, display, view, equal_ignoring_case);
    if (similar.size() == 1)
        return *similar.front();
    const std::string wanted = join_view(display, view);
    const std::vector<PublishedView> hidden_views = get_hidden_views();
    const auto hidden = find_views(hidden_views, display, view, equal_ignoring_case);
    if (similar.empty() && !hidden.empty())
        throw Failure(with_hint(
            make_error(Code::VIEW_UNKNOWN,
                       fmt::format("the view '{}' of {} is inactive", hidden.front()->label, config_name),
                       wanted),
            "add it to 'active_displays' and 'active_views' in the config, OCIO_ACTIVE_DISPLAYS or "
            "OCIO_ACTIVE_VIEWS"));
    const auto candidates = collect(views, [](const PublishedView& candidate) { return candidate.label; });
    throw Failure(explain_missing(Code::VIEW_UNKNOWN, fmt::format("no view '{}' in {}", wanted, config_name),
                                  wanted, errors, did_you_mean(wanted, candidates)));
}

ResolvedSpace resolve_color_space(const Session& session, const std::string& name) {
    return resolve_color_space(name, session.get_config_name(), get_space_errors(session));
}

PublishedView resolve_view(const Session& session, const std::string& display, const std::string& view) {
    return resolve_view(display, view, session.get_config_name(), get_space_errors(session));
}

std::string find_space(const Session& session, const std::string& name, Diagnostics& notes) {
    const ResolvedSpace found = resolve_color_space(session, name);
    if (found.kind == NameKind::ALIAS)
        notes.push_back(make_note(Code::NAME_SUBSTITUTED,
                                  fmt::format("'{}' is an alias of '{}'", name, found.label), name));
    else if (found.kind == NameKind::INACTIVE)
        notes.push_back(make_note(Code::COLOR_SPACE_INACTIVE,
                                  fmt::format("'{}' is an inactive color space of {}",
                                              remove_family(found.label), session.get_config_name()),
                                  name));
    else if (found.kind == NameKind::OTHER_CASE)
        notes.push_back(
            make_note(Code::NAME_SUBSTITUTED, fmt::format("using '{}' for '{}'", found.label, name), name));
    return found.label;
}

PublishedView find_view(const Session& session, const std::string& display, const std::string& view,
                        Diagnostics& notes) {
    PublishedView found = resolve_view(session, display, view);
    const std::string given = join_view(display, view);
    if (given != found.label)
        notes.push_back(make_note(Code::NAME_SUBSTITUTED,
                                  fmt::format("using the view '{}' for '{}'", found.label, given), given));
    return found;
}

} // namespace workflow
