#include "colorio/ocio/bake_run.h"

#include <sstream>

namespace ocio {

std::string run_baker(const ConstConfigRcPtr& config, const LutBake& bake, const std::string& source,
                      const std::string& shaper, const std::string& target) {
    const library::BakerRcPtr baker = library::Baker::Create();
    baker->setConfig(config);
    baker->setFormat(bake.format.c_str());
    baker->setInputSpace(source.c_str());
    baker->setTargetSpace(target.c_str());
    baker->setCubeSize(bake.size);
    if (!shaper.empty())
        baker->setShaperSpace(shaper.c_str());
    if (bake.shaper_size > 0)
        baker->setShaperSize(bake.shaper_size);
    std::ostringstream text;
    baker->bake(text);
    return text.str();
}

bool can_bake(const std::string& format) {
    for (int i = 0; i < library::Baker::getNumFormats(); ++i)
        if (format == library::Baker::getFormatNameByIndex(i))
            return true;
    return false;
}

} // namespace ocio
