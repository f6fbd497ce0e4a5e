#pragma once

#include <memory>
#include <string>

class PreferenceFile;
class StandaloneApp;

namespace tool {

class Console;
class LogRecorder;
struct SessionOptions;

/// What a session wants of the preferences.
enum class PreferenceUse { READ, CHANGE };

/// The preference file of a command, as it was when the command started; nothing when the options say so or
/// the user has no home.
class UserPreferences {
public:
    /// What is wrong with the file becomes warnings. Throws UsageError when there is no file to change,
    /// CommandError when a file that was named does not exist and shall be read.
    UserPreferences(const SessionOptions& options, PreferenceUse use, LogRecorder& recorder,
                    Console& console);
    ~UserPreferences();

    /// Empty when no file is used.
    const std::string& get_path() const { return path; }
    /// The application's own preferences.
    const StandaloneApp& get_app() const { return *app; }

    /// Gives the running module its part.
    void load_module() const;
    /// Saves what the running module now holds; the application's preferences stay as they were. Throws
    /// CommandError.
    void save_module(LogRecorder& recorder) const;

private:
    std::string path;
    std::unique_ptr<StandaloneApp> app;
    std::unique_ptr<PreferenceFile> file;
};

} // namespace tool
