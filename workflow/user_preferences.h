#pragma once

#include <memory>
#include <string>

#include "diagnostics/diagnostic.h"

class PreferenceFile;
class StandaloneApp;

namespace workflow {

struct SessionOptions;

/// What a session does with the preferences: follow them, show their own content, or change it.
enum class PreferenceUse { READ, SHOW, CHANGE };

/// The preferences file of a session, as it was when the session started; none when the options say so or the
/// user has no home folder.
class UserPreferences {
public:
    /// Throws diagnostics::Failure when there is no file to change, when a file that the options name cannot
    /// be used, and when a file to change cannot: nothing may then be saved over it. What is wrong with the
    /// user's own file otherwise becomes a warning. Other processes that change the file wait until this
    /// object has saved or ends.
    UserPreferences(const SessionOptions& options, PreferenceUse use);
    ~UserPreferences();

    /// Empty when no file is used.
    const std::string& get_path() const { return path; }
    /// The application's own preferences.
    const StandaloneApp& get_app() const { return *app; }
    /// What was wrong with the file when it was read.
    const diagnostics::Diagnostics& get_warnings() const { return warnings; }

    /// Gives the running module its part.
    void load_module() const;
    /// Saves what the running module now holds; the application's preferences stay as they were. Returns
    /// warnings, such as that a damaged file was renamed. Throws diagnostics::Failure.
    diagnostics::Diagnostics save_module() const;

private:
    std::string path;
    std::unique_ptr<StandaloneApp> app;
    std::unique_ptr<PreferenceFile> file;
    diagnostics::Diagnostics warnings;
};

} // namespace workflow
