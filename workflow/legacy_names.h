#pragma once

#include <string>

namespace workflow {

/// The current equivalents of a color space name saved by an earlier version; empty where there is none.
struct LegacyNames {
    bool is_legacy; ///< The name of a former built-in color space.
    std::string color_space;
    std::string view_of_preferences; ///< For a display that was named in the preferences.
    std::string view_of_widget;      ///< For a display that was named in a widget.
};

/// Needs an open session.
LegacyNames find_legacy_names(const std::string& name);

} // namespace workflow
