#include "colorio/ocio/search_folders.h"

#include <filesystem>

#include "colorio/ocio/types.h"

namespace ocio {

std::vector<std::string> get_search_folders(const ConstConfigRcPtr& config) {
    const std::filesystem::path own_folder = config->getWorkingDir();
    const library::ConstContextRcPtr context = config->getCurrentContext();
    std::vector<std::string> folders;
    for (int i = 0; i < config->getNumSearchPaths(); ++i) {
        const std::filesystem::path entry = context->resolveStringVar(config->getSearchPath(i));
        const std::filesystem::path folder = entry.empty() ? own_folder : own_folder / entry;
        folders.push_back(folder.lexically_normal().string());
    }
    if (folders.empty())
        folders.push_back(own_folder.string());
    return folders;
}

} // namespace ocio
