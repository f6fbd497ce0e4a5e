#include "colorio/ocio/search_folders.h"

#include <filesystem>

#include "colorio/ocio/config_side.h"
#include "colorio/ocio/context_variables.h"
#include "colorio/ocio/trimmed_text.h"
#include "colorio/ocio/types.h"

namespace ocio {

std::vector<std::string> get_search_folders(const ConstConfigRcPtr& config) {
    const std::filesystem::path own_folder = config->getWorkingDir();
    std::vector<std::string> folders;
    for (const std::string& entry : search_path_entries(config)) {
        const std::string text = resolve_variables(config, entry);
        const std::filesystem::path resolved = trim(text);
        const std::filesystem::path folder = resolved.empty() ? own_folder : own_folder / resolved;
        folders.push_back(folder.lexically_normal().string());
    }
    if (folders.empty())
        folders.push_back(own_folder.string());
    return folders;
}

} // namespace ocio
