#include "tool/config_source.h"

#include <filesystem>

#include <fmt/format.h>

#include "colorio/color_io_constants.h"
#include "host/sys/sys_env.h"

namespace tool {

std::string ConfigSource::get_name() const {
    return kind == BUILTIN ? "the built-in configuration" : std::filesystem::path(path).filename().string();
}

std::string ConfigSource::describe() const {
    return kind == BUILTIN ? get_name() : fmt::format("{} ({})", path, kind == FILE ? "--config" : "$OCIO");
}

ConfigSource find_config_source(const std::string& config_path) {
    if (!config_path.empty())
        return {ConfigSource::FILE, config_path};
    const CoreString variable = sys_get_env(OCIO_VARIABLE);
    if (!variable.is_empty())
        return {ConfigSource::ENVIRONMENT, variable.get_data()};
    return {};
}

} // namespace tool
