#include "colorio/ocio/file_rules.h"

#include "colorio/ocio/config.h"
#include "colorio/ocio/guarded.h"

namespace ocio {

FileRule find_file_rule(const ConstConfigRcPtr& config, const std::string& path) {
    if (get_major_version(config) < 2)
        return {};
    return guarded([&]() -> FileRule {
        std::size_t index = 0;
        const std::string space = config->getColorSpaceFromFilepath(path.c_str(), index);
        const library::ConstFileRulesRcPtr rules = config->getFileRules();
        return {rules->getName(index), space, index + 1 == rules->getNumEntries()};
    });
}

} // namespace ocio
