#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "image/part_conversion.h"
#include "image/part_plan.h"
#include "image/reader_process.h"

namespace workflow {

/// One image to read and one to write; they may be the same file.
struct ImageJob {
    std::string input;
    std::string output;
};

/// What became of an image.
struct ImageReport {
    std::uint64_t pixels = 0; ///< Of all parts.
    int width = 0;            ///< Of the first part.
    int height = 0;
    std::string depth;              ///< Type of the written colors, for example "half".
    std::vector<std::string> notes; ///< What the user should know, without repetition.
};

/// What the images of a sequence use one after the other: the process that reads them, and memory.
struct ImageBuffers {
    image::ReaderProcess reader;
    image::PixelBuffer input;
    image::PixelBuffer output;
};

/// How to convert images, the same for all images of a sequence.
struct ImageSettings {
    image::ConvertRows convert; ///< May be empty.
    image::OutputWishes wishes;
    int threads = 0; ///< For one image; 0 takes all cores.
};

/// Reads the image, converts the colors of all its parts and replaces the output by the result, whole or
/// not at all. Throws diagnostics::Failure with the file and the reason.
ImageReport convert_image(const ImageJob& job, const ImageSettings& settings, ImageBuffers& buffers);

} // namespace workflow
