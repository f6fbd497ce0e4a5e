#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "diagnostics/failure.h"
#include "workflow/config_source.h"
#include "workflow/user_preferences.h"

class StandaloneApp;

namespace workflow {

class LogForwarding;

/// What a session starts with.
struct SessionOptions {
    std::string config_path;      ///< OCIO config; empty follows $OCIO, then the preferences.
    bool builtin_only = false;    ///< Use the built-in config, whatever anything else names.
    std::string preferences_path; ///< Preferences file; empty for the user's own.
    bool no_preferences = false;  ///< Use no preferences file.
    /// Gets every message of the module and of OpenColorIO as it comes, from any thread; may be empty.
    std::function<void(const std::string& message)> on_log;
};

/// A config that was asked for cannot be used.
class ConfigFailure : public diagnostics::Failure {
public:
    ConfigFailure(diagnostics::Diagnostics reasons, ConfigSource source)
        : Failure(std::move(reasons)), source(std::move(source)) {}

    const ConfigSource& get_source() const { return source; }

private:
    ConfigSource source;
};

/// The color-management module, running with the config that the options ask for. The application's
/// preferences are set as a user would set them, and the module's own rules decide what that means. The
/// module is one for the process, so one session may exist at a time, used from the thread that made it;
/// conversions made by it may be applied anywhere.
class Session {
public:
    /// Throws ConfigFailure when a config that was asked for, by path, $OCIO or preferences, is not active
    /// afterwards, diagnostics::Failure when the module does not start or the preferences cannot be used. To
    /// SHOW or CHANGE preferences the module gets their own content, and neither the mapping file nor the CDL
    /// library that they name.
    explicit Session(const SessionOptions& options, PreferenceUse use = PreferenceUse::READ);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    const ConfigSource& get_source() const { return source; }
    /// For messages: "aces.ocio", or "the built-in config".
    std::string get_config_name() const { return source.get_name(); }
    /// The application whose preferences the module follows.
    StandaloneApp& get_app() { return *app; }
    const UserPreferences& get_preferences() const { return *preferences; }
    /// Saves the module's associations, custom color spaces and CDLs. Returns warnings; throws
    /// diagnostics::Failure.
    diagnostics::Diagnostics save_preferences() { return preferences->save_module(); }

    /// What was reported while the session started: by the preferences file, and by the module as it loaded
    /// the config, custom color spaces, CDLs and associations.
    const diagnostics::Diagnostics& get_load_diagnostics() const { return load_diagnostics; }
    /// What a user should be told at once: the warnings of the preferences file, and where temporary files
    /// go.
    const diagnostics::Diagnostics& get_notices() const { return notices; }

private:
    void load(PreferenceUse use);
    void follow_preferences();
    void close();

    std::unique_ptr<LogForwarding> log;
    std::unique_ptr<UserPreferences> preferences;
    ConfigSource source;
    std::unique_ptr<StandaloneApp> app;
    diagnostics::Diagnostics load_diagnostics;
    diagnostics::Diagnostics notices;
};

} // namespace workflow
