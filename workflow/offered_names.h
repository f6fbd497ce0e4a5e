#pragma once

#include <string>
#include <vector>

#include "workflow/session_options.h"

namespace workflow {

/// A name that a command line can contain, of the config in use or of the preferences.
struct OfferedName {
    /// VIEW_LABEL is a view with its display: "sRGB.Film".
    enum Kind {
        COLOR_SPACE,
        ROLE,
        VIEW_LABEL,
        VIEW,
        DISPLAY,
        LOOK,
        NAMED_TRANSFORM,
        CDL,
        FORMAT,
        CUSTOM_SPACE
    };

    Kind kind;
    std::string name;
    std::string display; ///< Of a view; else empty.
    std::string help;    ///< May be empty.
};

/// The names of the config that programs use with these options, loaded without a log. Empty if it cannot be
/// loaded. Names are kept in the user's cache folder as long as the files they come from are unchanged:
/// loading a large config takes longer than a user waits for a completion.
std::vector<OfferedName> list_offered_names(const SessionOptions& options);

} // namespace workflow
