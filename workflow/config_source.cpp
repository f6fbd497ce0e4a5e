#include "workflow/config_source.h"

#include <filesystem>

#include "colorio/color_io_constants.h"
#include "host/of/of_app.h"
#include "host/sys/sys_env.h"

namespace workflow {

std::string ConfigSource::get_name() const {
    if (kind == BUILTIN)
        return "the built-in config";
    return is_in_library(path) ? path : std::filesystem::path(path).filename().string();
}

const char* ConfigSource::get_kind_name() const {
    switch (kind) {
    case FILE:
        return "file";
    case ENVIRONMENT:
        return "environment";
    case PREFERENCES:
        return "preferences";
    case BUILTIN:
        break;
    }
    return "builtin";
}

bool is_in_library(const std::string& path) {
    return path.rfind("ocio://", 0) == 0;
}

ConfigSource find_config_source(const std::string& config_path, const OfApp& preferences) {
    if (!config_path.empty())
        return {ConfigSource::FILE, config_path};
    const CoreString variable = sys_get_env(OCIO_VARIABLE);
    if (!variable.is_empty())
        return {ConfigSource::ENVIRONMENT, variable.get_data()};
    const CoreString& preferred = preferences.get_color_space_file_path();
    if (preferences.get_use_color_space_file() && !preferred.is_empty())
        return {ConfigSource::PREFERENCES, preferred.get_data()};
    return {};
}

} // namespace workflow
