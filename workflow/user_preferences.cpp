#include "workflow/user_preferences.h"

#include <filesystem>

#include <fmt/format.h>

#include "colorio/color_io.h"
#include "diagnostics/file_failure.h"
#include "host/parser/parser_entry.h"
#include "standalone/preferences.h"
#include "standalone/standalone_app.h"

namespace workflow {

namespace {

using diagnostics::Code;
using diagnostics::Diagnostics;

std::string find_path(const SessionOptions& options, PreferenceUse use) {
    if (options.no_preferences)
        return "";
    if (options.preferences_path.empty()) {
        return use == PreferenceUse::CHANGE ? get_default_preferences_path()
                                            : PreferenceFile::get_default_path().get_data();
    }
    std::error_code error;
    if (use != PreferenceUse::CHANGE && !std::filesystem::exists(options.preferences_path, error))
        diagnostics::fail_to_read(Code::FILE_MISSING, options.preferences_path, diagnostics::NO_SUCH_FILE);
    return options.preferences_path;
}

/// The diagnostics with the severity of a warning.
Diagnostics make_warnings(Diagnostics reports) {
    for (diagnostics::Diagnostic& report : reports)
        report.severity = diagnostics::Severity::WARNING;
    return reports;
}

[[noreturn]] void fail(Diagnostics reports) {
    for (diagnostics::Diagnostic& report : reports)
        if (report.code == Code::FILE_UNWRITABLE && report.hint.empty())
            report.hint = "set XDG_CONFIG_HOME to a folder that can be written";
    throw diagnostics::Failure(std::move(reports));
}

} // namespace

std::string get_default_preferences_path() {
    std::string path = PreferenceFile::get_default_path().get_data();
    if (path.empty())
        throw NoHomeFailure(
            with_hint(make_error(Code::HOME_MISSING, "cannot locate the preferences file: no home folder"),
                      "set HOME or XDG_CONFIG_HOME"));
    return path;
}

UserPreferences::UserPreferences(const SessionOptions& options, PreferenceUse use)
    : path(find_path(options, use)), app(std::make_unique<StandaloneApp>()) {
    if (path.empty())
        return;
    file = std::make_unique<PreferenceFile>(path.c_str());
    const bool is_loaded = use == PreferenceUse::CHANGE ? file->load_to_change(*app) : file->load(*app);
    Diagnostics reports = file->take_diagnostics();
    if (!is_loaded && (use == PreferenceUse::CHANGE || !options.preferences_path.empty()))
        fail(std::move(reports));
    warnings = make_warnings(std::move(reports));
}

UserPreferences::~UserPreferences() = default;

void UserPreferences::load_module() const {
    if (file && file->get_color_management().get_value_count() > 0)
        ColorIO::load_config(&file->get_color_management());
}

Diagnostics UserPreferences::save_module() const {
    const bool is_saved = file->save(*app, [](ParserEntry* entry) { return ColorIO::save_config(entry); });
    Diagnostics reports = file->take_diagnostics();
    if (!is_saved)
        fail(std::move(reports));
    return make_warnings(std::move(reports));
}

} // namespace workflow
