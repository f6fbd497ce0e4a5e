#include "workflow/file_space.h"

#include <algorithm>
#include <filesystem>

#include <fmt/format.h>

#include "colorio/color_io.h"
#include "colorio/color_io_inspection.h"
#include "colorio/color_io_manager.h"
#include "diagnostics/failure.h"
#include "host/sys/sys_filesystem.h"
#include "image/image_reader.h"
#include "image/reader_process.h"
#include "workflow/color_identity.h"
#include "workflow/common_names.h"
#include "workflow/format_associations.h"
#include "workflow/ignoring_case.h"
#include "workflow/name_resolution.h"
#include "workflow/session.h"

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

bool is_scene_linear(const std::string& label) {
    return find_facts(label).encoding == "scene-linear";
}

/// Tries one source of information after the other until one decides.
class FileSpaceSearch {
public:
    FileSpaceSearch(const std::string& path, std::optional<image::ColorTags> tags,
                    const std::string& config_name, std::string part = {})
        : path(path), tags(std::move(tags)), config_name(config_name), part(std::move(part)) {}

    FileSpace run() {
        if (!ask_tags() && !ask_file_rules()) { // a rule says more than a tag that the config does not match
            result.warnings.insert(result.warnings.end(), doubts.begin(), doubts.end());
            if (!ask_association() && !take_default_rule())
                assume();
        }
        result.is_data = find_facts(result.color_space).is_data;
        return std::move(result);
    }

    /// The color space that the tags alone lead to; without a label, but with warnings, when they decide
    /// nothing.
    FileSpace find_tagged() {
        if (!ask_tags())
            add_new(result.warnings, doubts);
        return std::move(result);
    }

private:
    bool ask_tags();
    std::string resolve_tag(const image::ColorTag& tag, const std::vector<std::string>& ids);
    bool ask_file_rules();
    bool ask_association();
    bool take_default_rule();
    void assume();

    /// For messages: "'a.exr'", "the part 'albedo' of 'a.exr'".
    std::string get_subject() const {
        const std::string file = std::filesystem::path(path).filename().string();
        return part.empty() ? fmt::format("'{}'", file) : fmt::format("the part '{}' of '{}'", part, file);
    }
    void add_step(const char* name, std::string answer) { result.steps.push_back({name, std::move(answer)}); }
    bool decide(std::string label, std::string reason) {
        result.color_space = std::move(label);
        result.reason = std::move(reason);
        return true;
    }

    const std::string& path;
    const std::optional<image::ColorTags> tags;
    const std::string& config_name;
    const std::string part; ///< Empty for the whole file.
    ColorIOInspection::FileRule rule;
    diagnostics::Diagnostics doubts; ///< Warnings of tags, unless a file rule decides.
    FileSpace result;
};

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

bool FileSpaceSearch::ask_file_rules() {
    std::error_code error;
    const std::filesystem::path absolute = std::filesystem::absolute(path, error);
    rule = ColorIOInspection::find_file_rule(error ? path.c_str() : absolute.c_str());
    if (rule.name.is_empty() || rule.is_default) {
        add_step("file rules", rule.name.is_empty() ? config_name + " has none" : "only the default rule");
        return false;
    }
    const auto found = find_color_space(rule.color_space.get_data());
    add_step("file rules", fmt::format("the rule '{}' gives '{}'{}", rule.name.get_data(),
                                       rule.color_space.get_data(), found ? "" : ", which does not exist"));
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
    const bool is_float = !tags || tags->is_float;
    const std::string pixels = is_float ? "float" : "integer";
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

/// `tags` are those of the parts, of which the first that do not say data decide.
FileSpace find_space_of_parts(const std::string& path, const std::vector<PartTags>& tags,
                              const std::string& config_name) {
    std::vector<PartSpace> spaces;
    std::vector<diagnostics::Diagnostics> warnings;
    for (const PartTags& of_part : tags) {
        FileSpace tagged = FileSpaceSearch(path, of_part.tags, config_name, of_part.part).find_tagged();
        warnings.push_back(std::move(tagged.warnings));
        spaces.push_back(
            {of_part.part, tagged.color_space, tagged.reason, find_facts(tagged.color_space).is_data});
    }
    const auto colors =
        std::find_if(spaces.begin(), spaces.end(), [](const PartSpace& space) { return !space.is_data; });
    const std::size_t decisive =
        colors == spaces.end() ? 0 : static_cast<std::size_t>(colors - spaces.begin());
    FileSpace found = find_file_space(path, tags[decisive].tags, config_name);
    for (std::size_t i = 0; i < spaces.size(); ++i) {
        if (i != decisive)
            add_new(found.warnings, warnings[i]);
        std::vector<std::string> texts = tags[i].tags.describe();
        found.part_tags.push_back(texts);
        if (!spaces[i].color_space.empty() && spaces[i].color_space != found.color_space &&
            !find_tagged_space(found.other_tags, texts))
            found.other_tags.push_back({std::move(texts), spaces[i].color_space, spaces[i].is_data});
    }
    if (!found.other_tags.empty())
        found.parts = std::move(spaces);
    return found;
}

} // namespace

FileSpace find_file_space(const std::string& path, const std::optional<image::ColorTags>& tags,
                          const std::string& config_name) {
    return FileSpaceSearch(path, tags, config_name).run();
}

FileSpace find_file_space(const Session& session, const std::string& path) {
    const std::string config_name = session.get_config_name();
    std::vector<PartTags> tags;
    std::optional<diagnostics::Diagnostic> unread;
    try {
        image::ReaderProcess process;
        const image::ImageReader reader(path, process);
        tags = find_part_tags(reader.get_parts(), reader.get_format());
    } catch (const diagnostics::Failure& failure) {
        unread = failure.get_diagnostics().front();
    }
    FileSpace found = tags.empty() ? find_file_space(path, std::nullopt, config_name)
                                   : find_space_of_parts(path, tags, config_name);
    found.unread = std::move(unread);
    if (auto warning = find_unused_mapping(session))
        found.warnings.insert(found.warnings.begin(), std::move(*warning));
    return found;
}

} // namespace workflow
