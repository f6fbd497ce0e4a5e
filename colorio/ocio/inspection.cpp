#include "colorio/ocio/inspection.h"

namespace ocio {

std::vector<std::string> list_looks(const ConstConfigRcPtr& config) {
    std::vector<std::string> names;
    for (int i = 0; i < config->getNumLooks(); ++i)
        names.emplace_back(config->getLookNameByIndex(i));
    return names;
}

} // namespace ocio
