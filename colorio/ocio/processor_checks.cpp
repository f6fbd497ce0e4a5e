#include "colorio/ocio/processor_checks.h"

#include <string>

#include "colorio/ocio/config.h"

namespace ocio {

void require_pixels(long width, long height, bool described) {
    if (width <= 0 || height <= 0 || !described)
        throw Exception("a picture needs at least one pixel of at least three channels");
}

void require_view(const ConstConfigRcPtr& config, const char* display, const char* view) {
    if (get_display_color_space_name(config, display, view).empty())
        throw Exception(("display '" + std::string(display) + "' has no view '" + view + "'").c_str());
}

} // namespace ocio
