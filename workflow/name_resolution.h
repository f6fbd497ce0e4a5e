#pragma once

#include <optional>
#include <string>

#include "diagnostics/diagnostic.h"
#include "workflow/published_names.h"

namespace workflow {

class Session;

/// How a name was resolved to a color space.
enum class NameKind {
    LABEL,               ///< "Tavelion|sRGB".
    NAME_WITHOUT_FAMILY, ///< "sRGB".
    ROLE,                ///< "scene_linear".
    OTHER_CASE,          ///< One of the above in another case.
    ALIAS,               ///< An alias of an active color space.
    INACTIVE             ///< The name, label or alias of an inactive color space.
};

/// A color space found by a name.
struct ResolvedSpace {
    std::string label; ///< Of an inactive color space too, although it is not published.
    NameKind kind;
};

/// For explanations: "a role", "an alias".
const char* describe_kind(NameKind kind);

/// Finds the color space for a label, a name without its family or a role, else for one of these in another
/// case, else for an alias, else for any name of an inactive color space.
std::optional<ResolvedSpace> find_color_space(const std::string& name);

/// The same, but throws diagnostics::Failure with the nearest names as the hint, or, for a named transform,
/// with the reason. `config_name` is used in messages. If one of `errors` is about the name, it is the
/// reason.
ResolvedSpace resolve_color_space(const std::string& name, const std::string& config_name,
                                  const diagnostics::Diagnostics& errors = {});

/// Finds the view by its label ("Tavelion.sRGB", with an empty `display`) or by display and view, else the
/// only one that matches in another case. Throws like `resolve_color_space`.
PublishedView resolve_view(const std::string& display, const std::string& view,
                           const std::string& config_name, const diagnostics::Diagnostics& errors = {});

/// The error `what`, that `name` does not exist. If one of `errors` is about that name, it is the reason;
/// otherwise the error has `code` and `hint`.
diagnostics::Diagnostic explain_missing(diagnostics::Code code, const std::string& what,
                                        const std::string& name, const diagnostics::Diagnostics& errors,
                                        const std::string& hint);

/// `resolve_color_space` in the session's config. A custom color space that is not available because of its
/// files is refused with that reason.
ResolvedSpace resolve_color_space(const Session& session, const std::string& name);
/// `resolve_view` likewise.
PublishedView resolve_view(const Session& session, const std::string& display, const std::string& view);

/// Name of the named transform of the config, for its name or an alias. Throws like `resolve_color_space`.
std::string resolve_named_transform(const std::string& name, const std::string& config_name);

/// Label of `resolve_color_space` in the session's config. Adds a note for an alias, a name in another case
/// and an inactive color space.
std::string find_space(const Session& session, const std::string& name, diagnostics::Diagnostics& notes);
/// `resolve_view` in the session's config. Adds a note if the label differs from the given names.
PublishedView find_view(const Session& session, const std::string& display, const std::string& view,
                        diagnostics::Diagnostics& notes);

} // namespace workflow
