#pragma once

#include <optional>
#include <string>
#include <vector>

#include "diagnostics/diagnostic.h"

namespace workflow {

class Session;

// Format associations of the running module. All functions but `normalize_extensions` and
// `is_fallback_category` need an open session, and are called in its thread.

/// A file format with its extensions and the color space of its images.
struct FormatAssociation {
    std::string category;                ///< Name of the format.
    std::vector<std::string> extensions; ///< Lower case, without dots; "Other" for the category "default".
    std::string color_space;             ///< Label; may be missing in the active config.
};

/// The active associations, in the module's order.
std::vector<FormatAssociation> get_format_associations();
/// For messages: "the mapping file 'x.yaml'" or "the built-in associations".
std::string describe_association_source();
/// Whether the active associations are those of a mapping file.
bool uses_mapping_file();
/// Whether the active config has the color space of the association.
bool has_color_space(const FormatAssociation& association);
/// An error for each association whose color space the active config does not have, with the nearest names as
/// the hint.
diagnostics::Diagnostics find_unknown_spaces();
/// A warning with the reason if the module could not use the mapping file of the preferences.
std::optional<diagnostics::Diagnostic> find_unused_mapping(const Session& session);

/// A warning if a mapping file is used instead of the associations of the preferences.
std::optional<diagnostics::Diagnostic> find_overriding_mapping(const Session& session);

/// The association of an extension, by the module's rule: the first that lists it and has another color space
/// than "default", else the last that lists it, else "default".
FormatAssociation find_format_association(const std::string& extension);

/// True for categories that exist without preferences; they cannot be removed for good.
bool is_builtin_category(const std::string& category);
/// True for "default", the category of all extensions that no other lists.
bool is_fallback_category(const std::string& category);

/// Position of a category in the associations. Throws diagnostics::Failure with the nearest names as the
/// hint.
unsigned int find_category(const std::string& category);

/// The comma-separated extensions in `text` as the module stores them: lower case, without dots, separated by
/// ", ". Throws diagnostics::Failure when there is none.
std::string normalize_extensions(const std::string& text);

/// A warning for each extension of `category` whose color space is decided by another category.
diagnostics::Diagnostics find_shadowed_extensions(const std::string& category);

// Edits of the associations in a session with PreferenceUse::CHANGE; Session::save_preferences saves them.
// `extensions` is a comma-separated list, `color_space` any name that `resolve_color_space` accepts. All
// throw diagnostics::Failure.

/// Adds a category. Throws NAME_DUPLICATE if it exists.
void add_format(Session& session, const std::string& category, const std::string& extensions,
                const std::string& color_space);
/// Changes a category. Empty arguments change nothing. Throws USAGE for extensions of "default".
void change_format(Session& session, const std::string& category, const std::string& extensions,
                   const std::string& color_space);
/// Removes a category. Throws USAGE_REFUSED if it is built in.
void remove_format(Session& session, const std::string& category);

} // namespace workflow
