#include "colorio/ocio/inspection.h"

#include "colorio/ocio/error.h"
#include "colorio/ocio/processor.h"

namespace ocio {

std::vector<std::string> list_looks(const ConstConfigRcPtr& config) {
    std::vector<std::string> names;
    for (int i = 0; i < config->getNumLooks(); ++i)
        names.emplace_back(config->getLookNameByIndex(i));
    return names;
}

void try_look(const ConstConfigRcPtr& config, const std::string& name) {
    const library::ConstLookRcPtr look = config->getLook(name.c_str());
    if (!look)
        throw_error(diagnostics::Code::LOOK_UNKNOWN, "unknown look '" + name + "'", name);
    const library::LookTransformRcPtr conversion = library::LookTransform::Create();
    conversion->setSrc(look->getProcessSpace());
    conversion->setDst(look->getProcessSpace());
    conversion->setLooks(name.c_str());
    get_processor(config, conversion);
}

} // namespace ocio
