#include "colorio/ocio/config.h"

#include "colorio/ocio/config_side.h"
#include "colorio/ocio/guarded.h"
#include "colorio/ocio/yaml_size.h"

namespace ocio {

ConfigRcPtr create_config() {
    return guarded([] {
        const ConfigRcPtr config = library::Config::Create();
        config->setMajorVersion(1);
        config->addSearchPath(".");
        turn_processor_cache_off(config);
        return config;
    });
}

unsigned int get_major_version(const ConstConfigRcPtr& config) {
    return config->getMajorVersion();
}

void require_readable_config(const std::string& path) {
    require_bounded_yaml(path);
}

ConfigRcPtr copy_config(const ConstConfigRcPtr& config) {
    const ConfigRcPtr copy = config->createEditableCopy();
    copy->setDefaultViewTransformName(config->getDefaultViewTransformName());
    return copy;
}

void turn_processor_cache_off(const ConstConfigRcPtr& config) {
    std::const_pointer_cast<library::Config>(config)->setProcessorCacheFlags(library::PROCESSOR_CACHE_OFF);
}

library::ConstContextRcPtr get_variables(const ConstConfigRcPtr& config) {
    return config->getCurrentContext();
}

std::vector<std::string> search_path_entries(const ConstConfigRcPtr& config) {
    std::vector<std::string> entries;
    for (int i = 0; i < config->getNumSearchPaths(); ++i)
        entries.emplace_back(config->getSearchPath(i));
    return entries;
}

} // namespace ocio
