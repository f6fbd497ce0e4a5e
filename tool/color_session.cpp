#include "tool/color_session.h"

#include <filesystem>

#include <fmt/format.h>

#include "colorio/color_io.h"
#include "colorio/color_io_auto_detection.h"
#include "colorio/color_io_constants.h"
#include "colorio/color_io_manager.h"
#include "host/sys/sys_env.h"
#include "host/sys/sys_filesystem.h"
#include "standalone/standalone_app.h"
#include "tool/console.h"
#include "tool/exit_code.h"
#include "tool/failure_reason.h"

namespace tool {

namespace {

/// Checks what the module would pass over with a notice: it falls back where a file is missing.
void check_config_file(const std::string& path) {
    if (SysFilesystem::file_exists(path.c_str()))
        return;
    std::error_code error;
    const bool is_folder = std::filesystem::is_directory(path, error);
    throw CommandError(fmt::format("cannot load the configuration '{}': {}", path,
                                   is_folder ? "it is a folder" : "no such file"));
}

} // namespace

ColorSession::ColorSession(const SessionOptions& options, Console& console)
    : recorder(console, options.verbose) {
    if (!options.config_path.empty())
        check_config_file(options.config_path);
    app = std::make_unique<StandaloneApp>();
    try {
        load(options);
    } catch (...) {
        close();
        throw;
    }
}

ColorSession::~ColorSession() {
    close();
}

void ColorSession::load(const SessionOptions& options) {
    if (!ColorIO::init(app.get()) || !ColorIOManager::get_instance()->is_using_tavelion_config())
        throw CommandError(
            fmt::format("colour management does not start: {}", explain_failure(recorder.take_messages())));

    const std::string variable = sys_get_env(OCIO_VARIABLE).get_data();
    if (!options.config_path.empty()) {
        source = Source::FILE;
        config_path = options.config_path;
        app->set_color_space_file_path(config_path.c_str());
    } else if (!variable.empty()) {
        source = Source::ENVIRONMENT;
        config_path = variable;
    } else {
        return;
    }
    app->set_use_color_space_file(true);
    if (!ColorIOManager::get_instance()->is_using_tavelion_config())
        return;
    const std::string reason = explain_failure(recorder.take_messages());
    if (source == Source::FILE)
        throw CommandError(fmt::format("cannot load the configuration '{}': {}", config_path, reason));
    throw CommandError(fmt::format("cannot load the configuration '{}' that the environment variable OCIO "
                                   "names: {}\nSet OCIO to a usable file, or unset it for the built-in "
                                   "configuration.",
                                   config_path, reason));
}

void ColorSession::close() {
    ColorIO* facade = ColorIO::get_instance();
    facade->disconnect(*facade);
    ColorIO::destroy();
    ColorIOAutoDetection::destroy();
    ColorIOManager::s_default_color_space_name = CoreString(ColorIOManager::BUILTIN_LINEAR);
}

std::string ColorSession::get_config_name() const {
    if (source == Source::BUILTIN)
        return "the built-in configuration";
    return std::filesystem::path(config_path).filename().string();
}

} // namespace tool
