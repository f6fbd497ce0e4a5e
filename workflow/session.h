#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tool/exit_code.h"
#include "workflow/config_source.h"
#include "workflow/failure_reason.h"
#include "workflow/log_recorder.h"
#include "workflow/user_preferences.h"

class StandaloneApp;

namespace tool {

class Console;

/// What every command that uses colour management can be told.
struct SessionOptions {
    std::string config_path;      ///< Configuration file; empty follows $OCIO, else the preferences.
    bool builtin_only = false;    ///< Use the built-in configuration, whatever anything else says.
    std::string preferences_path; ///< Preference file; empty takes the user's own.
    bool no_preferences = false;  ///< Use no preference file.
    bool verbose = false;         ///< Show the module's messages as they come.
};

/// A configuration that was asked for cannot be used.
class ConfigError : public CommandError {
public:
    ConfigError(const std::string& message, ConfigSource source, FailureReason reason,
                std::vector<LoggedMessage> messages)
        : CommandError(message), source(std::move(source)), reason(std::move(reason)),
          messages(std::move(messages)) {}

    const ConfigSource source;
    const FailureReason reason;
    const std::vector<LoggedMessage> messages; ///< What the module logged while it tried.
};

/// The colour-management module, running, with the configuration that the options ask for. The application's
/// preferences are set as a user would set them, and the module's own rules decide what that means.
/// One at a time.
class ColorSession {
public:
    /// Throws ConfigError when a configuration that was asked for, by path or by $OCIO, is not in force
    /// afterwards, CommandError when the module does not start; the message gives the module's reasons.
    /// To SHOW or CHANGE preferences the module gets what they hold of its own, and neither the mapping file
    /// nor the CDL library that they name.
    ColorSession(const SessionOptions& options, Console& console, PreferenceUse use = PreferenceUse::READ);
    ~ColorSession();
    ColorSession(const ColorSession&) = delete;
    ColorSession& operator=(const ColorSession&) = delete;

    const ConfigSource& get_source() const { return source; }
    /// The application whose preferences the module follows.
    StandaloneApp& get_app() { return *app; }
    const UserPreferences& get_preferences() const { return preferences; }
    /// Keeps the module's associations, custom colour spaces and CDLs. Throws CommandError.
    void save_preferences() { preferences.save_module(recorder, console); }

    Console& get_console() { return console; }
    /// What the module logged since the last call; the first call answers what it logged while loading.
    std::vector<LoggedMessage> take_messages() { return recorder.take_messages(); }

private:
    void load(PreferenceUse use);
    void follow_preferences();
    [[noreturn]] void fail_to_load();
    void close();

    Console& console;
    LogRecorder recorder;
    UserPreferences preferences;
    const ConfigSource source;
    std::unique_ptr<StandaloneApp> app;
};

} // namespace tool
