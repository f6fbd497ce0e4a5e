#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "diagnostics/failure.h"
#include "workflow/config_source.h"
#include "workflow/session_options.h"
#include "workflow/user_preferences.h"

class StandaloneApp;

namespace workflow {

class CdlLibrary;
class LogForwarding;

/// The selected config cannot be used.
class ConfigFailure : public diagnostics::Failure {
public:
    /// `reasons` are the error for the user, followed by its causes.
    ConfigFailure(diagnostics::Diagnostics reasons, ConfigSource source)
        : Failure(std::move(reasons)), source(std::move(source)) {}

    /// The config that cannot be used.
    const ConfigSource& get_source() const { return source; }

private:
    ConfigSource source;
};

/// The running color-management module with a config. The module is a singleton: only one session may exist
/// at a time, and it is used from the thread that made it. Conversions may be applied in any thread.
class Session {
public:
    /// Throws ConfigFailure when the config of the path, $OCIO or the preferences cannot be used, and
    /// diagnostics::Failure when a context variable is not KEY=VALUE, when the module does not start or the
    /// preferences cannot be used. With SHOW and CHANGE the module gets the contents of the preferences file,
    /// without the mapping file and the CDL library that it names.
    explicit Session(const SessionOptions& options, PreferenceUse use = PreferenceUse::READ);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    /// Where the active config comes from.
    const ConfigSource& get_source() const { return source; }
    /// For messages: "aces.ocio", or "the built-in config".
    std::string get_config_name() const { return source.get_name(); }
    /// Why the config at `path` cannot be used; empty when it can. A path other than $OCIO's names a file.
    std::optional<diagnostics::Diagnostic> check_config(const std::string& path) const;
    /// Switches to the config file at `path`, or to the built-in config when that is empty. A file that
    /// cannot be used changes nothing; the result says why.
    std::optional<diagnostics::Diagnostic> use_config(const std::string& path);
    /// Loads the config again with these values of context variables (SessionOptions::context) in place of
    /// those so far. Returns warnings about variables that it does not use. Throws diagnostics::Failure, and
    /// changes nothing, for a variable that is not KEY=VALUE and when the config cannot be loaded with them.
    diagnostics::Diagnostics use_context(const std::vector<std::string>& context);
    /// The values in use.
    const std::vector<std::string>& get_context() const { return context; }
    /// Publishes the color corrections of the ASC CDL file at `path` as CDLs, or again after the file
    /// changed. A file that cannot be used changes nothing; the result says why.
    std::optional<diagnostics::Diagnostic> use_cdl_library(const std::string& path);
    /// The file of the published color corrections.
    const CdlLibrary& get_cdl_library() const { return *library; }
    /// The application whose preferences the module follows; lives as long as the session.
    StandaloneApp& get_app() { return *app; }
    const UserPreferences& get_preferences() const { return *preferences; }
    /// The application's preferences, to be changed before they are saved. This session does not follow them.
    StandaloneApp& edit_preferences() { return preferences->edit_app(); }
    /// Saves these and the module's format associations, custom color spaces and CDLs; only for
    /// PreferenceUse::CHANGE. Returns warnings. Throws diagnostics::Failure when nothing was saved.
    diagnostics::Diagnostics save_preferences() { return preferences->save_module(); }

    /// Diagnostics of the start: of the preferences file, the config, custom color spaces, CDLs and format
    /// associations.
    const diagnostics::Diagnostics& get_load_diagnostics() const { return load_diagnostics; }
    /// Diagnostics to show to the user at once, none of them an error: warnings of the preferences file,
    /// errors of the CDL library and of the files of custom color spaces and CDLs as warnings, and a note if
    /// temporary files are in an unusual folder.
    const diagnostics::Diagnostics& get_notices() const { return notices; }
    /// The errors among them that concern such files, as they were reported. The subject of each is the name
    /// of a color space or a CDL that is not available; empty for the library as a whole.
    const diagnostics::Diagnostics& get_custom_errors() const { return custom_errors; }
    /// Replaces them when these files were read again.
    void set_custom_errors(diagnostics::Diagnostics errors) { custom_errors = std::move(errors); }

private:
    void load(PreferenceUse use);
    void note_temp_folder();
    void use_library();
    void use_mapping();
    void take_custom_errors(const diagnostics::Diagnostics& reports);
    void take_mapping_errors(diagnostics::Diagnostics reports);
    void close();

    std::unique_ptr<LogForwarding> log;
    std::unique_ptr<UserPreferences> preferences;
    ConfigSource source;
    std::vector<std::string> context;
    std::unique_ptr<CdlLibrary> library;
    std::unique_ptr<StandaloneApp> app;
    diagnostics::Diagnostics load_diagnostics;
    diagnostics::Diagnostics notices;
    diagnostics::Diagnostics custom_errors;
};

} // namespace workflow
