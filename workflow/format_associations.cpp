#include "workflow/format_associations.h"

#include <algorithm>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "colorio/color_io.h"
#include "colorio/color_io_auto_detection.h"
#include "colorio/color_io_constants.h"
#include "colorio/color_io_manager.h"
#include "diagnostics/failure.h"
#include "host/of/of_app.h"
#include "host/sys/sys_filesystem.h"
#include "standalone/standalone_app.h"
#include "workflow/name_resolution.h"
#include "workflow/nearest_names.h"
#include "workflow/session.h"

namespace workflow {

namespace {

using diagnostics::Code;
using diagnostics::Diagnostic;

std::vector<std::string> split_extensions(const CoreString& list) {
    std::vector<std::string> extensions;
    for (const CoreString& part : list.split(',')) {
        std::string extension(part.view());
        extension.erase(std::remove(extension.begin(), extension.end(), ' '), extension.end());
        if (!extension.empty())
            extensions.push_back(extension);
    }
    return extensions;
}

bool lists(const FormatAssociation& association, const std::string& extension) {
    return std::find(association.extensions.begin(), association.extensions.end(), extension) !=
           association.extensions.end();
}

/// The first category "default"; without one, the module falls back to the built-in sRGB.
FormatAssociation find_fallback(const std::vector<FormatAssociation>& associations) {
    for (const FormatAssociation& association : associations)
        if (is_fallback_category(association.category))
            return association;
    return {FALLBACK_CATEGORY,
            {},
            fmt::format("{}{}{}", ColorIOManager::BUILTIN_FAMILY.data, ColorIOManager::FAMILY_SEPARATOR,
                        ColorIOManager::BUILTIN_SRGB.data)};
}

} // namespace

std::vector<FormatAssociation> get_format_associations() {
    const ColorIOAutoDetection& detection = *ColorIOAutoDetection::get_instance();
    std::vector<FormatAssociation> associations;
    for (unsigned int row = 0; row < detection.get_categories_count(); ++row)
        associations.push_back({detection.get_file_format(row).get_data(),
                                split_extensions(detection.get_extensions(row)),
                                detection.get_color_space(row).get_data()});
    return associations;
}

std::string describe_association_source() {
    if (!uses_mapping_file())
        return "the built-in associations";
    const OfApp& app = *ColorIOManager::get_instance()->get_app();
    return fmt::format("the mapping file '{}'", app.get_color_space_by_extension_file_path().view());
}

std::optional<diagnostics::Diagnostic> find_unused_mapping(const Session& session) {
    const StandaloneApp& wanted = session.get_preferences().get_app();
    const std::string path = wanted.get_color_space_by_extension_file_path().get_data();
    const bool is_wanted = wanted.get_use_color_space_by_extension_file() != 0 && !path.empty();
    if (!is_wanted || uses_mapping_file())
        return std::nullopt;
    Diagnostic reason = diagnostics::make_file_error(Code::FILE_MISSING, "unknown reason", path);
    for (const Diagnostic& reported : session.get_load_diagnostics())
        if (reported.file == path) {
            reason = reported;
            break;
        }
    reason.severity = diagnostics::Severity::WARNING;
    reason.message = "the mapping file of the preferences is not used: " + reason.message;
    return reason;
}

bool uses_mapping_file() {
    return ColorIOAutoDetection::get_instance()->is_file_config();
}

bool has_color_space(const FormatAssociation& association) {
    return ColorIO::color_space_exists(association.color_space.c_str());
}

diagnostics::Diagnostics find_unknown_spaces() {
    std::vector<std::string> labels;
    for (const PublishedSpace& space : get_published_spaces())
        labels.push_back(space.label);
    diagnostics::Diagnostics errors;
    for (const FormatAssociation& association : get_format_associations())
        if (!has_color_space(association))
            errors.push_back(
                with_hint(diagnostics::make_error(Code::MAPPING_COLOR_SPACE_UNKNOWN,
                                                  fmt::format("{} ({}): '{}'", association.category,
                                                              fmt::join(association.extensions, ", "),
                                                              association.color_space),
                                                  association.color_space),
                          did_you_mean(association.color_space, labels)));
    return errors;
}

std::optional<diagnostics::Diagnostic> find_overriding_mapping(const Session& session) {
    const StandaloneApp& app = session.get_preferences().get_app();
    const CoreString& path = app.get_color_space_by_extension_file_path();
    if (app.get_use_color_space_by_extension_file() == 0 || path.is_empty())
        return std::nullopt;
    return diagnostics::make_warning(
        Code::FORMAT_SHADOWED,
        fmt::format("the preferences use the mapping file '{}' instead of these associations", path.view()));
}

FormatAssociation find_format_association(const std::string& extension) {
    const std::vector<FormatAssociation> associations = get_format_associations();
    const std::string wanted = CoreString(extension.c_str()).get_lower_case().get_data();
    const FormatAssociation fallback = find_fallback(associations);
    FormatAssociation found = fallback;
    for (const FormatAssociation& association : associations) {
        if (found.color_space != fallback.color_space)
            break;
        if (lists(association, wanted))
            found = association;
    }
    return found;
}

bool is_fallback_category(const std::string& category) {
    return category == FALLBACK_CATEGORY;
}

bool is_builtin_category(const std::string& category) {
    const ColorIOAutoDetection builtin(nullptr);
    for (unsigned int row = 0; row < builtin.get_categories_count(); ++row)
        if (builtin.get_file_format(row) == category.c_str())
            return true;
    return false;
}

unsigned int find_category(const std::string& category) {
    std::vector<std::string> names;
    for (const FormatAssociation& association : get_format_associations())
        names.push_back(association.category);
    const auto found = std::find(names.begin(), names.end(), category);
    if (found == names.end())
        throw diagnostics::Failure(with_hint(
            diagnostics::make_error(
                Code::FORMAT_UNKNOWN,
                fmt::format("no category '{}' in {}", category, describe_association_source()), category),
            did_you_mean(category, names)));
    return static_cast<unsigned int>(found - names.begin());
}

std::string normalize_extensions(const std::string& text) {
    std::vector<std::string> extensions = split_extensions(CoreString(text.c_str()).get_lower_case());
    for (std::string& extension : extensions)
        extension.erase(0, extension.find_first_not_of('.'));
    extensions.erase(std::remove(extensions.begin(), extensions.end(), ""), extensions.end());
    if (extensions.empty())
        diagnostics::fail(Code::USAGE, fmt::format("invalid list of file extensions '{}'", text));
    return fmt::format("{}", fmt::join(extensions, ", "));
}

diagnostics::Diagnostics find_shadowed_extensions(const std::string& category) {
    diagnostics::Diagnostics warnings;
    const FormatAssociation association = get_format_associations()[find_category(category)];
    for (const std::string& extension : association.extensions) {
        const FormatAssociation decisive = find_format_association(extension);
        if (decisive.category != category && !is_fallback_category(category))
            warnings.push_back(diagnostics::make_warning(
                Code::FORMAT_SHADOWED,
                fmt::format("the color space of .{} files is still '{}', because the category '{}' "
                            "takes precedence",
                            extension, decisive.color_space, decisive.category)));
    }
    return warnings;
}

void add_format(Session& session, const std::string& category, const std::string& extensions,
                const std::string& color_space) {
    const std::vector<FormatAssociation> known = get_format_associations();
    if (std::any_of(known.begin(), known.end(),
                    [&](const FormatAssociation& one) { return one.category == category; }))
        diagnostics::fail(Code::NAME_DUPLICATE, fmt::format("a format named '{}' already exists", category));
    const std::string label = resolve_color_space(session, color_space).label;
    ColorIOAutoDetection::get_instance()->add_file_format(
        category.c_str(), normalize_extensions(extensions).c_str(), label.c_str());
}

void change_format(Session& session, const std::string& category, const std::string& extensions,
                   const std::string& color_space) {
    ColorIOAutoDetection& detection = *ColorIOAutoDetection::get_instance();
    if (!extensions.empty() && is_fallback_category(category))
        diagnostics::fail(
            Code::USAGE,
            fmt::format("cannot change the extensions of '{}': it applies to files of all other formats",
                        category));
    const unsigned int row = find_category(category);
    if (!extensions.empty())
        detection.set_extension_from_file_format(row, normalize_extensions(extensions).c_str());
    if (!color_space.empty())
        detection.set_default_color_space_from_file_format(
            row, resolve_color_space(session, color_space).label.c_str());
}

void remove_format(Session&, const std::string& category) {
    const unsigned int row = find_category(category);
    if (is_builtin_category(category))
        diagnostics::fail(Code::USAGE_REFUSED,
                          fmt::format("cannot remove '{}': it is a built-in format", category));
    ColorIOAutoDetection::get_instance()->remove_file_format(row);
}

} // namespace workflow
