#pragma once

#include <functional>
#include <string>
#include <vector>

namespace workflow {

/// Options of a session.
struct SessionOptions {
    std::string config_path;          ///< OCIO config; empty for $OCIO, then the config of the preferences.
    bool builtin_only = false;        ///< Ignore the above and use the built-in config.
    std::string preferences_path;     ///< Preferences file; empty for the default one of the user.
    bool no_preferences = false;      ///< Use no preferences file.
    std::vector<std::string> context; ///< Values of context variables: "SHOT=sq010".
    /// Receives every log message of the module and of OpenColorIO, from any thread; may be empty.
    std::function<void(const std::string& message)> on_log;
};

/// What a session does with the preferences: apply them, show the contents of the file, or change them.
enum class PreferenceUse { READ, SHOW, CHANGE };

} // namespace workflow
