#include "workflow/file_space.h"

#include <filesystem>
#include <utility>

#include <fmt/format.h>

#include "colorio/color_io.h"
#include "colorio/color_io_inspection.h"
#include "colorio/color_io_manager.h"
#include "diagnostics/failure.h"
#include "host/sys/sys_filesystem.h"
#include "workflow/color_identity.h"
#include "workflow/common_names.h"
#include "workflow/format_associations.h"
#include "workflow/ignoring_case.h"
#include "workflow/name_resolution.h"

namespace workflow {

namespace {

constexpr char SCENE_LINEAR_ROLE[] = "scene_linear";
constexpr char WITHOUT_PRIMARIES[] = "does not specify the primaries";
constexpr char NOT_RECOGNIZED[] = "is not recognized";
constexpr char STATES_UNKNOWN[] = "says that its color space is unknown";
/// Where configs say what integer images are in, the best first.
constexpr const char* BYTE_ROLES[] = {"default_byte", "matte_paint", "texture_paint", "color_picking",
                                      "default"};

/// The published label of a color space with or without its family; empty when it is not published.
CoreString find_label(const CoreString& name) {
    if (ColorIO::color_space_exists(name))
        return name;
    const CoreString bare = CoreString::after_first(name, ColorIOManager::FAMILY_SEPARATOR);
    const CoreString label = ColorIO::get_full_color_space_name(bare);
    return ColorIO::color_space_exists(label) ? label : CoreString();
}

CoreString find_fallback() {
    for (const CoreString& name : {ColorIO::get_default_color_space_name(), ColorIO::get_ROLE_SCENE_LINEAR()})
        if (const CoreString label = find_label(name); !label.is_empty())
            return label;
    return ColorIO::get_color_space_names().get_count() > 0 ? ColorIO::get_color_space_name(0) : CoreString();
}

/// The color space of the config that has the interop ID, or one of the names that configs give to it.
std::string find_identified(const std::string& id) {
    for (const ColorIOInspection::ColorSpace& space : ColorIOInspection::get_color_spaces())
        if (equal_ignoring_case(space.interop_id.get_data(), id))
            return make_label(space.family.get_data(), space.name.get_data());
    std::vector<std::string> names = get_common_names(id);
    names.insert(names.begin(), id);
    for (const std::string& name : names)
        if (const auto found = find_color_space(name); found && found->kind != NameKind::ROLE)
            return found->label;
    return "";
}

/// What the config states of a color space; nothing of one that it lacks.
ColorIOInspection::ColorSpace find_facts(const std::string& label) {
    for (const ColorIOInspection::ColorSpace& space : ColorIOInspection::get_color_spaces())
        if (make_label(space.family.get_data(), space.name.get_data()) == label)
            return space;
    return {};
}

/// The tag says that pixels are linear, and not with which primaries.
bool states_linear(const image::ColorTag& tag) {
    return tag.kind == image::ColorTag::DPX_TRANSFER && tag.text == "Linear" && lacks_primaries(tag);
}

bool is_scene_linear(const std::string& label) {
    return find_facts(label).encoding == "scene-linear";
}

/// Tries one source of information after the other until one decides.
class FileSpaceSearch {
public:
    FileSpaceSearch(const std::string& path, std::optional<image::ColorTags> tags,
                    const std::string& config_name, std::string part = {})
        : path(path), tags(std::move(tags)), config_name(config_name), part(std::move(part)) {}

    FileSpace run();
    /// The color space that the tags alone lead to; without a label, but with warnings, when they decide
    /// nothing.
    FileSpace find_tagged();

private:
    bool ask_tags();
    std::string resolve_tag(const image::ColorTag& tag, const std::vector<std::string>& ids);
    void find_file_rule();
    bool ask_data_rule();
    bool ask_file_rules();
    bool decide_by_rule();
    bool ask_association();
    bool take_default_rule();
    void assume();

    std::string get_subject() const;
    void add_step(const char* name, std::string answer);
    bool decide(std::string label, std::string reason);

    const std::string& path;
    const std::optional<image::ColorTags> tags;
    const std::string& config_name;
    const std::string part;           ///< Empty for the whole file.
    ColorIOInspection::FileRule rule; ///< The one that matches the path.
    bool is_linear = false;           ///< By a tag that says no more.
    diagnostics::Diagnostics doubts;  ///< Warnings of tags, unless a file rule decides.
    FileSpace result;
};

FileSpace FileSpaceSearch::run() {
    find_file_rule();
    if (!ask_data_rule() && !ask_tags() &&
        !ask_file_rules()) { // a rule says more than a tag that does not match
        result.warnings.insert(result.warnings.end(), doubts.begin(), doubts.end());
        if (is_linear || (!ask_association() && !take_default_rule()))
            assume();
    }
    result.is_data = find_facts(result.color_space).is_data;
    return std::move(result);
}

FileSpace FileSpaceSearch::find_tagged() {
    if (!ask_tags())
        add_new(result.warnings, doubts);
    result.is_data = find_facts(result.color_space).is_data;
    return std::move(result);
}

/// For messages: "'a.exr'", "the part 'albedo' of 'a.exr'".
std::string FileSpaceSearch::get_subject() const {
    const std::string file = std::filesystem::path(path).filename().string();
    return part.empty() ? fmt::format("'{}'", file) : fmt::format("the part '{}' of '{}'", part, file);
}

void FileSpaceSearch::add_step(const char* name, std::string answer) {
    result.steps.push_back({name, std::move(answer)});
}

bool FileSpaceSearch::decide(std::string label, std::string reason) {
    result.color_space = std::move(label);
    result.reason = std::move(reason);
    return true;
}

/// `ids` are the interop IDs that the tag stands for.
std::string FileSpaceSearch::resolve_tag(const image::ColorTag& tag, const std::vector<std::string>& ids) {
    if (tag.kind == image::ColorTag::NAME && !tag.states_unknown())
        if (const auto found = find_color_space(tag.text))
            return found->label;
    for (const std::string& id : ids)
        if (const std::string label = find_identified(id); !label.empty())
            return label;
    const bool names_space = tag.kind == image::ColorTag::NAME || tag.kind == image::ColorTag::INTEROP_ID;
    const std::string doubt =
        tag.states_unknown()   ? STATES_UNKNOWN
        : names_space          ? "does not name a color space of " + config_name
        : lacks_primaries(tag) ? WITHOUT_PRIMARIES
        : ids.empty()          ? NOT_RECOGNIZED
                               : fmt::format("describes colors that no color space of {} has", config_name);
    (names_space ? result.warnings : doubts)
        .push_back(diagnostics::make_warning(
            diagnostics::Code::COLOR_SPACE_ASSUMED,
            fmt::format("{}: its tag {} {}", get_subject(), tag.describe(), doubt), tag.text));
    return "";
}

bool FileSpaceSearch::ask_tags() {
    if (!tags)
        return false;
    result.tags = tags->describe();
    bool any = false;
    for (const image::ColorTag& tag : tags->tags) {
        if (!is_informative(tag))
            continue;
        any = true;
        is_linear = is_linear || states_linear(tag);
        const std::vector<std::string> ids = identify(tag);
        const std::string label = resolve_tag(tag, ids);
        const std::string answer = !label.empty()         ? "is " + label
                                   : tag.states_unknown() ? STATES_UNKNOWN
                                   : lacks_primaries(tag) ? WITHOUT_PRIMARIES
                                   : !ids.empty()         ? "is not a color space of " + config_name
                                                          : NOT_RECOGNIZED;
        add_step("tags", fmt::format("{} {}", tag.describe(), answer));
        if (!label.empty()) {
            result.warnings =
                doubts; // without those of names, which may be OpenImageIO's own, made of this tag
            return decide(label, fmt::format("from the tag {}", tag.describe()));
        }
    }
    if (!any)
        add_step("tags", "none");
    return false;
}

void FileSpaceSearch::find_file_rule() {
    std::error_code error;
    const std::filesystem::path absolute = std::filesystem::absolute(path, error);
    rule = ColorIOInspection::find_file_rule(error ? path.c_str() : absolute.c_str());
}

/// Tags are of no account in a file that is data by its path: writers add those of sRGB to everything.
bool FileSpaceSearch::ask_data_rule() {
    const bool is_specific = !rule.name.is_empty() && !rule.is_default;
    const auto found = is_specific ? find_color_space(rule.color_space.get_data()) : std::nullopt;
    return found && find_facts(found->label).is_data && decide_by_rule();
}

bool FileSpaceSearch::ask_file_rules() {
    if (!rule.name.is_empty() && !rule.is_default)
        return decide_by_rule();
    add_step("file rules", rule.name.is_empty() ? config_name + " has none" : "only the default rule");
    return false;
}

bool FileSpaceSearch::decide_by_rule() {
    const auto found = find_color_space(rule.color_space.get_data());
    const char* const remark = !found                             ? ", which does not exist"
                               : find_facts(found->label).is_data ? ", which holds data"
                                                                  : "";
    add_step("file rules", fmt::format("the rule '{}' gives '{}'{}", rule.name.get_data(),
                                       rule.color_space.get_data(), remark));
    return found && decide(found->label,
                           fmt::format("from the file rule '{}' of {}", rule.name.get_data(), config_name));
}

bool FileSpaceSearch::ask_association() {
    const CoreString extension = SysFilesystem::get_file_extension(path.c_str());
    const CoreString associated = ColorIO::get_instance()->get_default_color_space_from_ext(extension);
    const FormatAssociation association = find_format_association(extension.get_data());
    const std::string where =
        fmt::format("{}, category {}", describe_association_source(), association.category);
    const CoreString label = find_label(associated);
    add_step("associations",
             fmt::format("{}, gives '{}'{}", where, associated.get_data(),
                         label.is_empty() ? fmt::format(", which is not in {}", config_name) : ""));
    return !label.is_empty() && decide(label.get_data(), "from " + where);
}

bool FileSpaceSearch::take_default_rule() {
    const auto found = rule.name.is_empty() ? std::nullopt : find_color_space(rule.color_space.get_data());
    if (!found)
        return false;
    add_step("default rule", fmt::format("gives '{}'", rule.color_space.get_data()));
    if (tags && !tags->is_float && is_scene_linear(found->label))
        result.warnings.push_back(with_hint(
            diagnostics::make_warning(
                diagnostics::Code::COLOR_SPACE_ASSUMED,
                fmt::format("{}: the default file rule assigns integer pixels to '{}', which is scene-linear",
                            get_subject(), found->label),
                found->label),
            "name the color space of the image"));
    return decide(found->label, fmt::format("from the default file rule of {}", config_name));
}

void FileSpaceSearch::assume() {
    result.is_assumed = true;
    const bool is_float = is_linear || !tags || tags->is_float;
    const std::string pixels = is_linear ? "linear" : is_float ? "float" : "integer";
    std::string role, label;
    for (const char* candidate : BYTE_ROLES)
        if (!is_float && role.empty() && ColorIOInspection::has_role(candidate))
            if (const auto found = find_color_space(candidate)) {
                role = candidate;
                label = found->label;
            }
    if (role.empty())
        if (const auto found = find_color_space(SCENE_LINEAR_ROLE)) {
            role = SCENE_LINEAR_ROLE;
            label = found->label;
        }
    if (role.empty())
        label = find_fallback().get_data();
    const std::string origin = role.empty() ? "the default color space" : "the role " + role;
    add_step("assumption", fmt::format("{} for {} pixels", origin, pixels));
    decide(label, fmt::format("assumed: {}, for {} pixels", origin, pixels));
}

} // namespace

FileSpace find_file_space(const std::string& path, const std::optional<image::ColorTags>& tags,
                          const std::string& config_name) {
    return FileSpaceSearch(path, tags, config_name).run();
}

FileSpace find_tagged_space(const std::string& path, const PartTags& tags, const std::string& config_name) {
    return FileSpaceSearch(path, tags.tags, config_name, tags.part).find_tagged();
}

} // namespace workflow
