#include "workflow/user_preferences.h"

#include <filesystem>

#include <fmt/format.h>

#include "colorio/color_io.h"
#include "host/parser/parser_entry.h"
#include "standalone/preferences.h"
#include "standalone/standalone_app.h"
#include "tool/console.h"
#include "workflow/session.h"

namespace tool {

namespace {

std::string find_path(const SessionOptions& options, PreferenceUse use) {
    if (options.no_preferences)
        return "";
    if (options.preferences_path.empty()) {
        const std::string path = PreferenceFile::get_default_path().get_data();
        if (path.empty() && use == PreferenceUse::CHANGE)
            throw UsageError("there is no home folder for preferences; name a file with --prefs");
        return path;
    }
    std::error_code error;
    if (use == PreferenceUse::READ && !std::filesystem::exists(options.preferences_path, error))
        throw CommandError(
            fmt::format("cannot load the preferences '{}': no such file", options.preferences_path));
    return options.preferences_path;
}

void warn_of_messages(LogRecorder& recorder, Console& console) {
    for (const LoggedMessage& message : recorder.take_messages())
        console.warn(message.text);
}

} // namespace

UserPreferences::UserPreferences(const SessionOptions& options, PreferenceUse use, LogRecorder& recorder,
                                 Console& console)
    : path(find_path(options, use)), app(std::make_unique<StandaloneApp>()) {
    if (path.empty())
        return;
    file = std::make_unique<PreferenceFile>(path.c_str());
    const bool is_loaded = use == PreferenceUse::CHANGE ? file->load_to_change(*app) : file->load(*app);
    if (!is_loaded && (use == PreferenceUse::CHANGE || !options.preferences_path.empty()))
        throw CommandError(explain_failure(recorder.take_messages()));
    warn_of_messages(recorder, console);
}

UserPreferences::~UserPreferences() = default;

void UserPreferences::load_module() const {
    if (file && file->get_color_management().get_value_count() > 0)
        ColorIO::load_config(&file->get_color_management());
}

void UserPreferences::save_module(LogRecorder& recorder, Console& console) const {
    recorder.take_messages();
    if (!file->save(*app, [](ParserEntry* entry) { return ColorIO::save_config(entry); }))
        throw CommandError(explain_failure(recorder.take_messages()));
    warn_of_messages(recorder, console);
}

} // namespace tool
