#include "workflow/session.h"

#include <filesystem>

#include <fmt/format.h>

#include "colorio/color_io.h"
#include "colorio/color_io_auto_detection.h"
#include "colorio/color_io_manager.h"
#include "host/sys/sys_filesystem.h"
#include "standalone/standalone_app.h"
#include "tool/console.h"

namespace tool {

namespace {

std::string describe_refusal(const ConfigSource& source, const std::string& reason) {
    switch (source.kind) {
    case ConfigSource::ENVIRONMENT:
        return fmt::format("cannot load the configuration '{}' that the environment variable OCIO names: {}\n"
                           "Set OCIO to a usable file, or unset it for the built-in configuration.",
                           source.path, reason);
    case ConfigSource::PREFERENCES:
        return fmt::format("cannot load the configuration '{}' that the preferences name: {}\n"
                           "Name another with --config, or leave the preferences aside with --no-prefs.",
                           source.path, reason);
    default:
        return fmt::format("cannot load the configuration '{}': {}", source.path, reason);
    }
}

FailureReason explain_missing_config(const std::string& path) {
    std::error_code error;
    if (std::filesystem::is_directory(path, error))
        return {FailureKind::MISSING_FILE, "it is a folder"};
    if (is_in_library(path))
        return {FailureKind::OTHER,
                "it is no file but a configuration that the colour library itself may hold; set OCIO=" +
                    path + " for it"};
    return {FailureKind::MISSING_FILE, "no such file"};
}

/// Checks what the module would pass over with a notice: it falls back where a file is missing.
void check_config_file(const ConfigSource& source) {
    if (!source.is_file() || SysFilesystem::file_exists(source.path.c_str()))
        return;
    const FailureReason reason = explain_missing_config(source.path);
    throw ConfigError(describe_refusal(source, reason.text), source, reason, {});
}

ConfigSource find_source(const SessionOptions& options, const UserPreferences& preferences) {
    return options.builtin_only ? ConfigSource()
                                : find_config_source(options.config_path, preferences.get_app());
}

bool is_builtin_config_active() {
    return ColorIOManager::get_instance()->is_using_tavelion_config();
}

} // namespace

ColorSession::ColorSession(const SessionOptions& options, Console& console, PreferenceUse use)
    : console(console), recorder(console, options.verbose), preferences(options, use, recorder, console),
      source(find_source(options, preferences)) {
    check_config_file(source);
    app = std::make_unique<StandaloneApp>();
    try {
        load(use);
        if (!options.verbose && !app->get_temp_folder_note().is_empty())
            console.note(app->get_temp_folder_note().get_data());
    } catch (...) {
        close();
        throw;
    }
}

ColorSession::~ColorSession() {
    close();
}

void ColorSession::load(PreferenceUse use) {
    // A module whose own configuration failed follows no change of preferences, so none can be used.
    if (!ColorIO::init(app.get()) || !is_builtin_config_active() || recorder.has_error())
        throw CommandError(
            fmt::format("colour management does not start: {}", explain_failure(recorder.take_messages())));
    app->set_default_color_space_name(preferences.get_app().get_default_color_space_name());
    preferences.load_module();
    if (source.is_file())
        app->set_color_space_file_path(source.path.c_str());
    if (source.kind != ConfigSource::BUILTIN) {
        app->set_use_color_space_file(true);
        if (is_builtin_config_active())
            fail_to_load();
    }
    if (use == PreferenceUse::READ)
        follow_preferences();
}

/// Files that add to what the module itself keeps.
void ColorSession::follow_preferences() {
    const StandaloneApp& wanted = preferences.get_app();
    app->set_cdl_library_file_path(wanted.get_cdl_library_file_path());
    app->set_color_space_by_extension_file_path(wanted.get_color_space_by_extension_file_path());
    app->set_use_color_space_by_extension_file(wanted.get_use_color_space_by_extension_file());
}

void ColorSession::fail_to_load() {
    std::vector<LoggedMessage> messages = recorder.take_messages();
    const FailureReason reason = find_failure_reason(messages);
    throw ConfigError(describe_refusal(source, reason.text), source, reason, std::move(messages));
}

void ColorSession::close() {
    ColorIO* facade = ColorIO::get_instance();
    facade->disconnect(*facade);
    ColorIO::destroy();
    ColorIOAutoDetection::destroy();
    ColorIOManager::s_default_color_space_name = CoreString(ColorIOManager::BUILTIN_LINEAR);
}

} // namespace tool
