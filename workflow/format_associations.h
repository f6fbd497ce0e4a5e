#pragma once

#include <optional>
#include <string>
#include <vector>

#include "diagnostics/diagnostic.h"

namespace workflow {

class Session;

/// A file format with its extensions and the color space that its images are in.
struct FormatAssociation {
    std::string category;
    std::vector<std::string> extensions; ///< Of the row "default" that which no file has: "Other".
    std::string color_space;
};

/// The associations that the running module has in force, in its order.
std::vector<FormatAssociation> get_format_associations();
/// "the mapping file 'x.yaml'" or "the built-in associations".
std::string describe_association_source();
/// A warning with the reason where the preferences name a mapping file and the module could not use it.
std::optional<diagnostics::Diagnostic> find_unused_mapping(const Session& session);

/// The association that decides about an extension, by the module's rule: the first that lists it and does
/// not give the space of "default", else the last that lists it, else "default" itself.
FormatAssociation find_format_association(const std::string& extension);

/// True for the categories that are there without preferences, and come back when they are removed.
bool is_builtin_category(const std::string& category);
bool is_fallback_category(const std::string& category);

/// Position of a category among the associations. Throws diagnostics::Failure with the nearest names.
unsigned int find_category(const std::string& category);

/// Extensions as the module stores them: lower case, without dots, separated by commas. Throws
/// diagnostics::Failure when there is none in `text`.
std::string normalize_extensions(const std::string& text);

/// What the user should know about a category: "files .x stay in Y, of category Z, which comes first".
std::vector<std::string> find_shadowed_extensions(const std::string& category);

} // namespace workflow
