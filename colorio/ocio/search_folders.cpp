#include "colorio/ocio/search_folders.h"

#include <filesystem>
#include <string_view>

#include "colorio/ocio/config_side.h"
#include "colorio/ocio/context_variables.h"
#include "colorio/ocio/types.h"

namespace ocio {

namespace {

std::string stripped(std::string_view text) {
    constexpr std::string_view BLANKS = " \t\r\n";
    const std::size_t first = text.find_first_not_of(BLANKS);
    if (first == std::string_view::npos)
        return {};
    return std::string(text.substr(first, text.find_last_not_of(BLANKS) - first + 1));
}

} // namespace

std::vector<std::string> get_search_folders(const ConstConfigRcPtr& config) {
    const std::filesystem::path own_folder = config->getWorkingDir();
    std::vector<std::string> folders;
    for (const std::string& entry : search_path_entries(config)) {
        const std::filesystem::path resolved = stripped(resolve_variables(config, entry));
        const std::filesystem::path folder = resolved.empty() ? own_folder : own_folder / resolved;
        folders.push_back(folder.lexically_normal().string());
    }
    if (folders.empty())
        folders.push_back(own_folder.string());
    return folders;
}

} // namespace ocio
