#include "workflow/format_associations.h"

#include <algorithm>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "colorio/color_io_auto_detection.h"
#include "colorio/color_io_constants.h"
#include "colorio/color_io_manager.h"
#include "host/of/of_app.h"
#include "host/sys/sys_filesystem.h"
#include "standalone/standalone_app.h"
#include "tool/console.h"
#include "tool/exit_code.h"
#include "workflow/failure_reason.h"
#include "workflow/nearest_names.h"
#include "workflow/session.h"

namespace tool {

namespace {

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

/// The first row "default"; where there is none, the module falls back to its own sRGB.
FormatAssociation find_fallback(const std::vector<FormatAssociation>& associations) {
    for (const FormatAssociation& association : associations)
        if (is_fallback_category(association.category))
            return association;
    return {FALLBACK_CATEGORY,
            {},
            fmt::format("{}{}{}", ColorIOManager::BUILTIN_FAMILY.data, ColorIOManager::FAMILY_SEPARATOR,
                        ColorIOManager::BUILTIN_SRGB.data)};
}

/// What the module said first of the file.
std::string explain_unused(const std::string& path, const std::vector<LoggedMessage>& messages) {
    if (!SysFilesystem::file_exists(path.c_str()))
        return fmt::format("there is no '{}'", path);
    const auto is_about_file = [&](const LoggedMessage& message) {
        return message.text.find(path) != std::string::npos;
    };
    const auto found = std::find_if(messages.begin(), messages.end(), is_about_file);
    if (found == messages.end())
        return fmt::format("'{}'", path);
    return find_failure_reason({{LOG_WARNING, found->text}})
        .text; // where the fault lies is told as information
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
    if (!ColorIOAutoDetection::get_instance()->is_file_config())
        return "the built-in associations";
    const OfApp& app = *ColorIOManager::get_instance()->get_app();
    return fmt::format("the mapping file '{}'", app.get_color_space_by_extension_file_path().view());
}

void warn_of_unused_mapping(ColorSession& session) {
    const StandaloneApp& wanted = session.get_preferences().get_app();
    const std::string path = wanted.get_color_space_by_extension_file_path().get_data();
    const std::vector<LoggedMessage> messages = session.take_messages();
    const bool is_wanted = wanted.get_use_color_space_by_extension_file() != 0 && !path.empty();
    if (is_wanted && !ColorIOAutoDetection::get_instance()->is_file_config())
        session.get_console().warn(fmt::format("the mapping file that the preferences name is not in use: {}",
                                               explain_unused(path, messages)));
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
        throw CommandError(fmt::format("no category '{}' among {}{}", category, describe_association_source(),
                                       did_you_mean(category, names)));
    return static_cast<unsigned int>(found - names.begin());
}

std::string normalize_extensions(const std::string& text) {
    std::vector<std::string> extensions = split_extensions(CoreString(text.c_str()).get_lower_case());
    for (std::string& extension : extensions)
        extension.erase(0, extension.find_first_not_of('.'));
    extensions.erase(std::remove(extensions.begin(), extensions.end(), ""), extensions.end());
    if (extensions.empty())
        throw UsageError(fmt::format("'{}' names no extension", text));
    return fmt::format("{}", fmt::join(extensions, ", "));
}

std::vector<std::string> find_shadowed_extensions(const std::string& category) {
    std::vector<std::string> notes;
    const FormatAssociation association = get_format_associations()[find_category(category)];
    for (const std::string& extension : association.extensions) {
        const FormatAssociation decisive = find_format_association(extension);
        if (decisive.category != category && !is_fallback_category(category))
            notes.push_back(fmt::format("files .{} stay in {}: category '{}' decides about them", extension,
                                        decisive.color_space, decisive.category));
    }
    return notes;
}

} // namespace tool
