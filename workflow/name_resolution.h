#pragma once

#include <string>

#include "workflow/published_names.h"

namespace tool {

class Console;

/// How a name leads to a colour space.
enum class NameKind { LABEL, NAME_WITHOUT_FAMILY, ROLE, OTHER_CASE, ALIAS };

struct ResolvedSpace {
    std::string label;
    NameKind kind;
};

/// What the user called it by, in words: "a role", "another name of it".
const char* describe_kind(NameKind kind);

/// The published colour space that `name` means: a label, a bare name, a role, or else one of these in
/// another case or an alias. Throws CommandError with the nearest names, or with the reason where the name
/// means something that conversions cannot take; `config_name` says where it was sought.
ResolvedSpace resolve_color_space(const std::string& name, const std::string& config_name);

/// The view that a label ("Tavelion.sRGB") or a display and a view name; where none is called just so, the
/// only one in another case. Throws like `resolve_color_space`.
PublishedView resolve_view(const std::string& display, const std::string& view,
                           const std::string& config_name);

/// Tells the user what was made of a name that is not quite the configuration's own.
void note_meaning(const std::string& name, const ResolvedSpace& found, Console& console);
void note_meaning(const std::string& display, const std::string& name, const PublishedView& found,
                  Console& console);

} // namespace tool
