#include "workflow/session.h"

#include <algorithm>
#include <filesystem>
#include <iterator>

#include <fmt/format.h>

#include "colorio/color_io.h"
#include "colorio/color_io_auto_detection.h"
#include "colorio/color_io_diagnostics.h"
#include "colorio/color_io_manager.h"
#include "host/sys/sys_filesystem.h"
#include "standalone/standalone_app.h"
#include "workflow/log_forwarding.h"

namespace workflow {

namespace {

using diagnostics::Code;
using diagnostics::Diagnostic;
using diagnostics::Diagnostics;

/// Hint for a config that cannot be loaded.
std::string get_remedy(ConfigSource::Kind kind) {
    switch (kind) {
    case ConfigSource::ENVIRONMENT:
        return "set OCIO to a usable config, or unset it for the built-in config";
    case ConfigSource::PREFERENCES:
        return "use another config with --config, or ignore the preferences with --no-prefs";
    default:
        return "";
    }
}

std::string describe_origin(ConfigSource::Kind kind) {
    switch (kind) {
    case ConfigSource::ENVIRONMENT:
        return ", named by the environment variable OCIO";
    case ConfigSource::PREFERENCES:
        return ", named by the preferences";
    default:
        return "";
    }
}

/// The error for the user, which contains the worst cause, followed by the other causes and `earlier`
/// reports.
Diagnostics make_refusal(const ConfigSource& source, const Diagnostics& causes,
                         const Diagnostics& earlier = {}) {
    Diagnostic refusal =
        add_context(fmt::format("cannot load the config '{}'{}", source.path, describe_origin(source.kind)),
                    causes, Code::CONFIG_INVALID);
    if (refusal.hint.empty())
        refusal.hint = get_remedy(source.kind);
    Diagnostics all = {std::move(refusal)};
    all.insert(all.end(), earlier.begin(), earlier.end());
    if (const Diagnostic* worst = diagnostics::find_worst(causes))
        std::copy_if(causes.begin(), causes.end(), std::back_inserter(all),
                     [worst](const Diagnostic& cause) { return cause.message != worst->message; });
    return all;
}

Diagnostic explain_missing_config(const std::string& path) {
    std::error_code error;
    if (std::filesystem::is_directory(path, error))
        return diagnostics::make_file_error(Code::FILE_NOT_REGULAR, "it is a folder", path);
    Diagnostic missing = diagnostics::make_file_error(Code::CONFIG_MISSING, "no such file", path);
    if (is_in_library(path)) {
        missing.message = "built-in configs of OpenColorIO can only be selected with $OCIO";
        missing.hint = "set OCIO=" + path;
    }
    return missing;
}

/// Throws ConfigFailure if the file is missing; the module would fall back to the built-in config.
void require_config_file(const ConfigSource& source) {
    if (source.is_file() && !SysFilesystem::file_exists(source.path.c_str()))
        throw ConfigFailure(make_refusal(source, {explain_missing_config(source.path)}), source);
}

ConfigSource find_source(const SessionOptions& options, const UserPreferences& preferences) {
    return options.builtin_only ? ConfigSource()
                                : find_config_source(options.config_path, preferences.get_app());
}

bool is_builtin_config_active() {
    return ColorIOManager::get_instance() && ColorIOManager::get_instance()->is_using_tavelion_config();
}

void append(Diagnostics& list, Diagnostics others) {
    list.insert(list.end(), std::make_move_iterator(others.begin()), std::make_move_iterator(others.end()));
}

} // namespace

Session::Session(const SessionOptions& options, PreferenceUse use)
    : log(std::make_unique<LogForwarding>(options.on_log)),
      preferences(std::make_unique<UserPreferences>(options, use)),
      source(find_source(options, *preferences)), load_diagnostics(preferences->get_warnings()),
      notices(load_diagnostics) {
    require_config_file(source);
    app = std::make_unique<StandaloneApp>();
    try {
        load(use);
    } catch (...) {
        close();
        throw;
    }
}

Session::~Session() {
    close();
}

void Session::load(PreferenceUse use) {
    ColorIODiagnostics collector;
    const bool is_started = ColorIO::init(app.get()) && is_builtin_config_active();
    Diagnostics reports = collector.take();
    // Without its built-in config the module does not follow preferences and cannot load another config.
    if (!is_started || diagnostics::has_error(reports))
        throw diagnostics::Failure(
            add_context("cannot start color management", reports, Code::CONFIG_BUILTIN));
    append(load_diagnostics, std::move(reports));
    note_temp_folder();
    app->set_default_color_space_name(preferences->get_app().get_default_color_space_name());
    preferences->load_module();
    append(load_diagnostics, collector.take());
    if (source.is_file())
        app->set_color_space_file_path(source.path.c_str());
    if (source.kind != ConfigSource::BUILTIN) {
        app->set_use_color_space_file(true);
        Diagnostics causes = collector.take();
        if (is_builtin_config_active())
            throw ConfigFailure(make_refusal(source, causes, load_diagnostics), source);
        append(load_diagnostics, std::move(causes));
    }
    if (use == PreferenceUse::READ)
        follow_preferences();
    append(load_diagnostics, collector.take());
}

void Session::note_temp_folder() {
    const CoreString& text = app->get_temp_folder_note();
    if (text.is_empty())
        return;
    const Diagnostic note = diagnostics::make_note(Code::FILE_UNWRITABLE, text.get_data());
    notices.push_back(note);
    load_diagnostics.push_back(note);
}

/// Passes the CDL library and the mapping file of the preferences to the module.
void Session::follow_preferences() {
    const StandaloneApp& wanted = preferences->get_app();
    app->set_cdl_library_file_path(wanted.get_cdl_library_file_path());
    app->set_color_space_by_extension_file_path(wanted.get_color_space_by_extension_file_path());
    app->set_use_color_space_by_extension_file(wanted.get_use_color_space_by_extension_file());
}

void Session::close() {
    if (ColorIO* facade = ColorIO::get_instance())
        facade->disconnect(*facade);
    ColorIO::destroy();
    ColorIOAutoDetection::destroy();
    ColorIOManager::s_default_color_space_name = CoreString(ColorIOManager::BUILTIN_LINEAR);
}

} // namespace workflow
