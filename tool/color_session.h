#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tool/log_recorder.h"

class StandaloneApp;

namespace tool {

class Console;

/// What every command that uses colour management can be told.
struct SessionOptions {
    std::string config_path; ///< Configuration file; empty follows $OCIO, else the built-in configuration.
    bool verbose = false;    ///< Show the module's messages as they come.
};

/// The colour-management module, running, with the configuration that the options ask for. The application's
/// preferences are set as a user would set them, and the module's own rules decide what that means.
/// One at a time.
class ColorSession {
public:
    /// Throws CommandError when the module does not start, or when a configuration that was asked for, by
    /// path or by $OCIO, is not in force afterwards; the message gives the module's reasons.
    ColorSession(const SessionOptions& options, Console& console);
    ~ColorSession();
    ColorSession(const ColorSession&) = delete;
    ColorSession& operator=(const ColorSession&) = delete;

    enum class Source { BUILTIN, FILE, ENVIRONMENT };
    Source get_source() const { return source; }
    /// Path of the configuration in force; empty for the built-in one.
    const std::string& get_config_path() const { return config_path; }
    /// For messages: "aces.ocio", or "the built-in configuration".
    std::string get_config_name() const;

    /// What the module logged since the last call; the first call answers what it logged while loading.
    std::vector<LoggedMessage> take_messages() { return recorder.take_messages(); }

private:
    void load(const SessionOptions& options);
    void close();

    LogRecorder recorder;
    std::unique_ptr<StandaloneApp> app;
    Source source = Source::BUILTIN;
    std::string config_path;
};

} // namespace tool
