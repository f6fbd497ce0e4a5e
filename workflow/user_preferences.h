#pragma once

#include <memory>
#include <string>

#include "diagnostics/failure.h"
#include "workflow/session_options.h"

class PreferenceFile;
class StandaloneApp;

namespace workflow {

/// There is no default path of a preferences file to change: the user has no home folder.
class NoHomeFailure : public diagnostics::Failure {
public:
    using Failure::Failure;
};

/// Path of the preferences file of the user, which need not exist. Throws NoHomeFailure.
std::string get_default_preferences_path();

/// The preferences file of a session, as read at its start. Uses no file with `no_preferences` and when the
/// user has no home folder.
class UserPreferences {
public:
    /// Throws diagnostics::Failure when the file given in the options, or any file that is to be changed,
    /// cannot be used, as NoHomeFailure when there is none to be changed. Other errors of the default file
    /// become warnings. With CHANGE the file is locked until this object has saved or ends; other processes
    /// that change it wait.
    UserPreferences(const SessionOptions& options, PreferenceUse use);
    ~UserPreferences();

    /// Empty when no file is used.
    const std::string& get_path() const { return path; }
    /// The application's preferences in the file.
    const StandaloneApp& get_app() const { return *app; }
    StandaloneApp& edit_app() { return *app; }
    /// Warnings of reading the file.
    const diagnostics::Diagnostics& get_warnings() const { return warnings; }

    /// Passes the module's preferences in the file to the running module.
    void load_module() const;
    /// Saves the preferences of the running module and of the application. Returns warnings, such as that a
    /// damaged file was renamed. Throws diagnostics::Failure when nothing was saved.
    diagnostics::Diagnostics save_module() const;

private:
    std::string path;
    std::unique_ptr<StandaloneApp> app;
    std::unique_ptr<PreferenceFile> file;
    diagnostics::Diagnostics warnings;
};

} // namespace workflow
