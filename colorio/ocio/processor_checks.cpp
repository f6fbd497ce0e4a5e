#include "colorio/ocio/processor_checks.h"

#include <string>

#include "colorio/ocio/config.h"

namespace ocio {

void require_pixels(long width, long height, bool described) {
    if (width <= 0 || height <= 0 || !described)
        throw Exception(
            "a picture needs at least one pixel, three channels or more, and memory that holds them");
}

void require_view(const ConstConfigRcPtr& config, const char* display, const char* view) {
    if (get_display_color_space_name(config, display, view).empty())
        throw Exception(("display '" + std::string(display) + "' has no view '" + view + "'").c_str());
}

} // namespace ocio
