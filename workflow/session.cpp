#include "workflow/session.h"

#include <algorithm>
#include <iterator>

#include <fmt/format.h>

#include "colorio/color_io.h"
#include "colorio/color_io_auto_detection.h"
#include "colorio/color_io_candidate.h"
#include "colorio/color_io_context.h"
#include "colorio/color_io_diagnostics.h"
#include "colorio/color_io_manager.h"
#include "files/diagnosis.h"
#include "files/input_file.h"
#include "host/event/event_ids.h"
#include "standalone/standalone_app.h"
#include "workflow/cdl_library.h"
#include "workflow/context_variables.h"
#include "workflow/log_forwarding.h"
#include "workflow/mapping_location.h"
#include "workflow/missing_cdl_files.h"

namespace workflow {

namespace {

using diagnostics::Code;
using diagnostics::Diagnostic;
using diagnostics::Diagnostics;
using diagnostics::Severity;

/// Hint for a config that cannot be loaded.
std::string get_remedy(ConfigSource::Kind kind) {
    return kind == ConfigSource::ENVIRONMENT
               ? "set OCIO to a usable config, or unset it for the built-in config"
               : "";
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
    const Diagnostic* const worst = diagnostics::find_worst(causes);
    const bool is_located = worst && worst->line != 0 && worst->file == source.path;
    const std::string name = is_located ? "" : fmt::format(" '{}'", source.path); // else the place names it
    Diagnostic refusal =
        add_context(fmt::format("cannot load the config{}{}", name, describe_origin(source.kind)), causes,
                    Code::CONFIG_INVALID);
    if (refusal.hint.empty())
        refusal.hint = get_remedy(source.kind);
    Diagnostics all = {std::move(refusal)};
    all.insert(all.end(), earlier.begin(), earlier.end());
    if (worst)
        std::copy_if(causes.begin(), causes.end(), std::back_inserter(all),
                     [worst](const Diagnostic& cause) { return !(cause == *worst); });
    return all;
}

/// Why the config at `path` cannot be read, without the path: the refusal names it.
Diagnostic explain_unreadable_config(const files::Failure& failure) {
    Diagnostic cause = files::to_diagnostic(failure);
    cause.message = files::get_reason(failure);
    if (cause.code == Code::FILE_MISSING)
        cause.code = Code::CONFIG_MISSING;
    return cause;
}

/// Throws ConfigFailure if the file cannot be read; the module would fall back to the built-in config.
void require_config_file(const ConfigSource& source) {
    if (!source.is_file() || is_in_library(source.path))
        return;
    if (const auto opened = files::open_for_reading(source.path); !opened)
        throw ConfigFailure(make_refusal(source, {explain_unreadable_config(opened.get_failure())}), source);
}

ConfigSource find_source(const SessionOptions& options, const UserPreferences& preferences) {
    return options.builtin_only ? ConfigSource()
                                : find_config_source(options.config_path, preferences.get_app());
}

bool is_builtin_config_active() {
    return ColorIOManager::get_instance() && ColorIOManager::get_instance()->is_using_tavelion_config();
}

/// What a user calls the thing that a diagnostic is about.
std::string describe_subject(const Diagnostic& diagnostic) {
    for (const auto& space : ColorIOManager::get_instance()->get_tavelion_color_spaces())
        if (!space.is_builtin && space.name == diagnostic.subject.c_str())
            return fmt::format("the custom color space '{}'", diagnostic.subject);
    return fmt::format("the CDL '{}'", diagnostic.subject);
}

/// An error of the files of custom color spaces and CDLs, for commands that work without them.
Diagnostic make_notice(Diagnostic diagnostic) {
    if (!diagnostic.subject.empty())
        diagnostic.message = fmt::format("{}{}: {}", describe_subject(diagnostic),
                                         diagnostic.severity == Severity::ERROR ? " is not available" : "",
                                         diagnostic.message);
    diagnostic.severity = Severity::WARNING;
    return diagnostic;
}

} // namespace

Session::Session(const SessionOptions& options, PreferenceUse use)
    : log(std::make_unique<LogForwarding>(options.on_log)),
      preferences(std::make_unique<UserPreferences>(options, use)),
      source(find_source(options, *preferences)), context(options.context),
      library(std::make_unique<CdlLibrary>()), load_diagnostics(preferences->get_warnings()),
      notices(load_diagnostics) {
    require_config_file(source);
    set_context(context);
    app = std::make_unique<StandaloneApp>();
    try {
        load(use);
        add_new(notices, find_unused_variables(context, get_config_name()));
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
    add_new(load_diagnostics, reports);
    note_temp_folder();
    app->set_default_color_space_name(preferences->get_app().get_default_color_space_name());
    preferences->load_module();
    take_custom_errors(collector.take());
    take_custom_errors(find_missing_cdl_files());
    if (source.is_file())
        app->set_color_space_file_path(source.path.c_str());
    if (source.kind != ConfigSource::BUILTIN) {
        app->set_use_color_space_file(true);
        Diagnostics causes = collector.take();
        if (is_builtin_config_active())
            throw ConfigFailure(make_refusal(source, causes, load_diagnostics), source);
        add_new(load_diagnostics, causes);
    }
    if (use != PreferenceUse::READ)
        return;
    use_library();
    take_custom_errors(library->name_original(collector.take()));
    use_mapping();
    take_mapping_errors(collector.take());
}

std::optional<Diagnostic> Session::check_config(const std::string& path) const {
    // OCIO may name a config that is not a file, such as "ocio://default".
    const bool is_of_environment = source.kind == ConfigSource::ENVIRONMENT && path == source.path;
    return is_of_environment ? ColorIOCandidate::check_config_of_environment()
                             : ColorIOCandidate::check_config_file(path.c_str());
}

std::optional<Diagnostic> Session::use_config(const std::string& path) {
    if (path.empty()) {
        app->set_use_color_space_file(false);
        source = ConfigSource();
        return {};
    }
    // The module would fall back to the built-in config.
    if (std::optional<Diagnostic> error = check_config(path))
        return error;
    ColorIODiagnostics collector;
    if (path == app->get_color_space_file_path().view())
        app->raise_event(EVT_ID_APPLICATION_COLOR_SPACE_FILE_PATH_CHANGED);
    else
        app->set_color_space_file_path(path.c_str());
    app->set_use_color_space_file(true);
    const ConfigSource wanted{ConfigSource::FILE, path};
    const bool has_changed_meanwhile = is_builtin_config_active();
    source = has_changed_meanwhile ? ConfigSource() : wanted;
    return has_changed_meanwhile ? std::optional(make_refusal(wanted, collector.take()).front())
                                 : std::nullopt;
}

/// The module prints the error of a library that cannot be parsed on standard output, so it gets no such one.
std::optional<Diagnostic> Session::use_cdl_library(const std::string& path) {
    if (std::optional<Diagnostic> error = library->load(path))
        return error;
    const CoreString module_path = library->get_module_path().c_str();
    if (app->get_cdl_library_file_path() == module_path)
        app->raise_event(EVT_ID_APPLICATION_CDL_FILE_PATH_CHANGED);
    else
        app->set_cdl_library_file_path(module_path);
    return {};
}

void Session::note_temp_folder() {
    const CoreString& text = app->get_temp_folder_note();
    if (text.is_empty())
        return;
    const Diagnostic note = diagnostics::make_note(Code::TEMPORARY_FOLDER, text.get_data());
    notices.push_back(note);
    load_diagnostics.push_back(note);
}

void Session::take_mapping_errors(Diagnostics reports) {
    const bool uses_file = app->get_use_color_space_by_extension_file() != 0;
    // The module adds a row with this color space to files that lack one for all other extensions.
    const std::string added = app->get_default_color_space_name().get_data();
    for (Diagnostic& report : reports) {
        locate_in_mapping(report);
        if (uses_file && report.code == Code::MAPPING_COLOR_SPACE_UNKNOWN && report.subject != added)
            add_new(notices, {report});
    }
    add_new(load_diagnostics, reports);
}

/// Keeps errors of the CDL library and of the files of custom color spaces and CDLs. Errors of the mapping
/// file are reported by the commands that use it.
void Session::take_custom_errors(const Diagnostics& reports) {
    add_new(load_diagnostics, reports);
    for (const Diagnostic& report : reports) {
        if (report.severity == Severity::NOTE || (report.file.empty() && report.subject.empty()))
            continue;
        add_new(notices, {make_notice(report)});
        if (report.severity == Severity::ERROR)
            add_new(custom_errors, {report});
    }
}

void Session::use_library() {
    const CoreString& path = preferences->get_app().get_cdl_library_file_path();
    if (path.is_empty())
        return;
    if (const std::optional<Diagnostic> error = use_cdl_library(path.get_data()))
        take_custom_errors({*error});
    else
        take_custom_errors(library->get_warnings());
}

void Session::use_mapping() {
    const StandaloneApp& wanted = preferences->get_app();
    // In this order the module checks the file's associations alone.
    app->set_use_color_space_by_extension_file(wanted.get_use_color_space_by_extension_file());
    app->set_color_space_by_extension_file_path(wanted.get_color_space_by_extension_file_path());
}

Diagnostics Session::use_context(const std::vector<std::string>& wanted) {
    set_context(wanted);
    // Nothing in the built-in config depends on variables.
    if (!source.path.empty()) {
        // With an unusable config the module would switch to the built-in one.
        if (const std::optional<Diagnostic> error = check_config(source.path)) {
            set_context(context);
            throw diagnostics::Failure(make_refusal(source, {*error}));
        }
        app->raise_event(EVT_ID_APPLICATION_COLOR_SPACE_FILE_PATH_CHANGED);
    }
    context = wanted;
    return find_unused_variables(context, get_config_name());
}

void Session::close() {
    ColorIOContext::set_variables({});
    if (ColorIO* facade = ColorIO::get_instance())
        facade->disconnect(*facade);
    ColorIO::destroy();
    ColorIOAutoDetection::destroy();
    ColorIOManager::s_default_color_space_name = CoreString(ColorIOManager::BUILTIN_LINEAR);
}

} // namespace workflow
