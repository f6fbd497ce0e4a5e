#include "colorio/ocio/file_location.h"

#include <algorithm>
#include <filesystem>
#include <vector>

#include "colorio/ocio/context_variables.h"
#include "colorio/ocio/search_folders.h"

namespace ocio {

namespace {

namespace fs = std::filesystem;

/// The path that OpenColorIO finds; empty when it finds no file.
std::string locate_by_library(const ConstConfigRcPtr& config, const std::string& source) {
    try {
        return config->getCurrentContext()->resolveFileLocation(source.c_str());
    } catch (const Exception&) {
        return {};
    }
}

} // namespace

std::string locate_file(const ConstConfigRcPtr& config, const std::string& source) {
    const std::string file = resolve_variables(config, source);
    std::vector<std::string> folders = get_search_folders(config);
    if (std::none_of(folders.begin(), folders.end(), may_hold_variables) && !may_hold_variables(file))
        return locate_by_library(config, source);
    if (fs::path(file).is_absolute())
        folders = {""};
    for (const std::string& folder : folders) {
        const fs::path path = fs::path(folder) / file;
        std::error_code unreadable;
        if (!file.empty() && fs::exists(path, unreadable))
            return path.string();
    }
    return {};
}

} // namespace ocio
