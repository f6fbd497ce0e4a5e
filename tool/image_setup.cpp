#include "tool/image_setup.h"

#include "workflow/setup_check.h"

namespace tool {

workflow::SetupReport examine_image_libraries() {
    return workflow::examine_images();
}

} // namespace tool
