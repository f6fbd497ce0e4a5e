#pragma once

#include <string>

#include "image/part_plan.h"
#include "workflow/conversion.h"
#include "workflow/image_job.h"

namespace workflow {

/// How images are converted and written, besides their colors.
struct ImageOptions {
    std::string
        depth; ///< Of written colors and alpha: uint8, uint16, half or float; empty keeps the input's.
    image::AlphaRule alpha_rule = image::AlphaRule::AS_THE_FILE_SAYS;
    int threads = 0; ///< For one image; 0 takes all cores.
};

/// Settings for images that go through `conversion`, which must outlive them.
ImageSettings make_image_settings(const Conversion& conversion, const ImageOptions& options = {});

/// Converts the image at `input` and replaces the file at `output` by the result, whole or not at all; they
/// may be the same file. The reader process must have been started (image/reader_server.h). Throws
/// diagnostics::Failure.
ImageReport convert_image(const Conversion& conversion, const std::string& input, const std::string& output,
                          const ImageOptions& options = {});

} // namespace workflow
