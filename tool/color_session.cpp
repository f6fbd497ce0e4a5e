#include "tool/color_session.h"

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

/// Checks what the module would pass over with a notice: it falls back where a file is missing.
void check_config_file(const std::string& path) {
    if (SysFilesystem::file_exists(path.c_str()))
        return;
    std::error_code error;
    const bool is_folder = std::filesystem::is_directory(path, error);
    const FailureReason reason = {FailureKind::MISSING_FILE, is_folder ? "it is a folder" : "no such file"};
    throw ConfigError(fmt::format("cannot load the configuration '{}': {}", path, reason.text), reason, {});
}

bool is_builtin_config_active() {
    return ColorIOManager::get_instance()->is_using_tavelion_config();
}

} // namespace

ColorSession::ColorSession(const SessionOptions& options, Console& console)
    : source(find_config_source(options.config_path)), recorder(console, options.verbose) {
    if (source.kind == ConfigSource::FILE)
        check_config_file(source.path);
    app = std::make_unique<StandaloneApp>();
    try {
        load();
    } catch (...) {
        close();
        throw;
    }
}

ColorSession::~ColorSession() {
    close();
}

void ColorSession::load() {
    if (!ColorIO::init(app.get()) || !is_builtin_config_active())
        throw CommandError(
            fmt::format("colour management does not start: {}", explain_failure(recorder.take_messages())));
    if (source.kind == ConfigSource::BUILTIN)
        return;
    if (source.kind == ConfigSource::FILE)
        app->set_color_space_file_path(source.path.c_str());
    app->set_use_color_space_file(true);
    if (is_builtin_config_active())
        fail_to_load();
}

void ColorSession::fail_to_load() {
    std::vector<LoggedMessage> messages = recorder.take_messages();
    const FailureReason reason = find_failure_reason(messages);
    const std::string text =
        source.kind == ConfigSource::FILE
            ? fmt::format("cannot load the configuration '{}': {}", source.path, reason.text)
            : fmt::format("cannot load the configuration '{}' that the environment variable OCIO names: {}\n"
                          "Set OCIO to a usable file, or unset it for the built-in configuration.",
                          source.path, reason.text);
    throw ConfigError(text, reason, std::move(messages));
}

void ColorSession::close() {
    ColorIO* facade = ColorIO::get_instance();
    facade->disconnect(*facade);
    ColorIO::destroy();
    ColorIOAutoDetection::destroy();
    ColorIOManager::s_default_color_space_name = CoreString(ColorIOManager::BUILTIN_LINEAR);
}

} // namespace tool
