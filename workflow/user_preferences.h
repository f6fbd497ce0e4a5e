#pragma once

#include <memory>
#include <string>

class PreferenceFile;
class StandaloneApp;

namespace tool {

class Console;
class LogRecorder;
struct SessionOptions;

/// What a session wants of the preferences: to follow them, to show what they hold themselves, or to change
/// that.
enum class PreferenceUse { READ, SHOW, CHANGE };

/// The preference file of a command, as it was when the command started; nothing when the options say so or
/// the user has no home.
class UserPreferences {
public:
    /// What is wrong with the user's own file becomes warnings. Throws UsageError when there is no file to
    /// change, CommandError when a file that the options name cannot be used, and when a file to change
    /// cannot be: nothing may then be saved over it. Other processes that change the file wait until this
    /// object has saved or ends.
    UserPreferences(const SessionOptions& options, PreferenceUse use, LogRecorder& recorder,
                    Console& console);
    ~UserPreferences();

    /// Empty when no file is used.
    const std::string& get_path() const { return path; }
    /// The application's own preferences.
    const StandaloneApp& get_app() const { return *app; }

    /// Gives the running module its part.
    void load_module() const;
    /// Saves what the running module now holds; the application's preferences stay as they were. What
    /// happens to a damaged file becomes a warning. Throws CommandError.
    void save_module(LogRecorder& recorder, Console& console) const;

private:
    std::string path;
    std::unique_ptr<StandaloneApp> app;
    std::unique_ptr<PreferenceFile> file;
};

} // namespace tool
