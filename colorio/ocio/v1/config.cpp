#include "colorio/ocio/config.h"

#include <sstream>

#include "colorio/ocio/config_side.h"
#include "colorio/ocio/error.h"
#include "colorio/ocio/guarded.h"
#include "colorio/ocio/profile_version.h"
#include "colorio/ocio/v1/yaml_depth.h"
#include "colorio/ocio/yaml_size.h"

namespace ocio {

ConfigRcPtr create_config() {
    return guarded([] {
        const ConfigRcPtr config = library::Config::Create();
        config->setSearchPath(".");
        return config;
    });
}

unsigned int get_major_version(const ConstConfigRcPtr&) {
    return 1;
}

/// OpenColorIO would load a newer config, ignore unknown parts, and so give other colors.
void require_readable_config(const std::string& path) {
    // First, since the parser in the second check needs it as much as OpenColorIO does.
    require_shallow_yaml(path);
    require_bounded_yaml(path);
    const std::string newer = describe_newer_profile(path);
    if (!newer.empty())
        throw_file_error(diagnostics::Code::CONFIG_NEWER, newer, path);
}

ConfigRcPtr copy_config(const ConstConfigRcPtr& config) {
    return config->createEditableCopy();
}

/// This library has none.
void turn_processor_cache_off(const ConstConfigRcPtr&) {}

library::ConstContextRcPtr get_variables(const ConstConfigRcPtr& config) {
    const library::ContextRcPtr copy = config->getCurrentContext()->createEditableCopy();
    copy->setWorkingDir(copy->getWorkingDir()); // forgets the places of files, which were copied too
    return copy;
}

/// OpenColorIO splits it at each colon before it replaces variables.
std::vector<std::string> search_path_entries(const ConstConfigRcPtr& config) {
    std::vector<std::string> entries;
    std::istringstream search_path(config->getSearchPath());
    for (std::string entry; std::getline(search_path, entry, ':');)
        entries.push_back(entry);
    return entries;
}

} // namespace ocio
