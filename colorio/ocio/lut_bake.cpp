#include "colorio/ocio/lut_bake.h"

#include <strings.h>

namespace ocio {

std::vector<std::string> list_bake_formats(const std::string& extension) {
    std::vector<std::string> formats;
    for (int i = 0; i < library::Baker::getNumFormats(); ++i)
        if (strcasecmp(library::Baker::getFormatExtensionByIndex(i), extension.c_str()) == 0)
            formats.emplace_back(library::Baker::getFormatNameByIndex(i));
    return formats;
}

} // namespace ocio
