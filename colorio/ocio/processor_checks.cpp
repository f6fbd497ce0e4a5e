#include "colorio/ocio/processor_checks.h"

#include <string>

#include "colorio/ocio/config.h"
#include "colorio/ocio/error.h"

namespace ocio {

void require_pixels(long width, long height, bool described) {
    if (width <= 0 || height <= 0 || !described)
        throw_error(diagnostics::Code::CONVERSION_IMPOSSIBLE,
                    "an image needs at least one pixel, three channels or more, and memory that holds them");
}

void require_view(const ConstConfigRcPtr& config, const char* display, const char* view) {
    if (get_display_color_space_name(config, display, view).empty())
        throw_error(diagnostics::Code::VIEW_UNKNOWN,
                    "display '" + std::string(display) + "' has no view '" + view + "'",
                    std::string(display) + "." + view);
}

std::vector<std::string> list_files(const library::ProcessorMetadata& metadata) {
    std::vector<std::string> files;
    for (int i = 0; i < metadata.getNumFiles(); ++i)
        files.emplace_back(metadata.getFile(i));
    return files;
}

} // namespace ocio
