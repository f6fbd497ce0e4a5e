#pragma once

#include <string>

#include "diagnostics/diagnostic.h"
#include "workflow/published_names.h"

namespace workflow {

class Session;

/// How a name leads to a color space.
enum class NameKind { LABEL, NAME_WITHOUT_FAMILY, ROLE, OTHER_CASE, ALIAS };

struct ResolvedSpace {
    std::string label;
    NameKind kind;
};

/// For `--why`: "a role", "an alias".
const char* describe_kind(NameKind kind);

/// The published color space that `name` means: a label, a name without its family, a role, or else one of
/// these in another case or an alias. Throws diagnostics::Failure with the nearest names as the hint, or with
/// the reason where the name belongs to something that cannot be converted; `config_name` is for the message.
ResolvedSpace resolve_color_space(const std::string& name, const std::string& config_name);

/// The view that a label ("Tavelion.sRGB") or a display and a view name; where there is none, the only one in
/// another case. Throws like `resolve_color_space`.
PublishedView resolve_view(const std::string& display, const std::string& view,
                           const std::string& config_name);

/// `resolve_color_space` in the session's config: its label. Adds a note where the name was taken for
/// another.
std::string find_space(const Session& session, const std::string& name, diagnostics::Diagnostics& notes);
/// `resolve_view` likewise.
PublishedView find_view(const Session& session, const std::string& display, const std::string& view,
                        diagnostics::Diagnostics& notes);

} // namespace workflow
