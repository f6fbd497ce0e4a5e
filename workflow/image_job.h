#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "image/part_conversion.h"
#include "image/part_plan.h"
#include "image/reader_process.h"

namespace tool {

/// One picture to read and one to write; they may be the same file.
struct PictureJob {
    std::string input;
    std::string output;
};

/// What became of a picture.
struct PictureReport {
    std::uint64_t pixels = 0; ///< Of all parts.
    int width = 0;            ///< Of the first part.
    int height = 0;
    std::string depth;              ///< Type of the written colours, for example "half".
    std::vector<std::string> notes; ///< What the user should know, without repetition.
};

/// What the images of a sequence use one after the other: the process that reads them, and memory.
struct PictureBuffers {
    ReaderProcess reader;
    PixelBuffer input;
    PixelBuffer output;
};

/// How to convert pictures, the same for all pictures of a sequence.
struct PictureSettings {
    ConvertRows convert; ///< May be empty.
    OutputWishes wishes;
    int threads = 0; ///< For one picture; 0 takes all cores.
};

/// Reads the picture, converts the colours of all its parts and replaces the output by the result, whole or
/// not at all. Throws CommandError with the file and the reason.
PictureReport convert_picture(const PictureJob& job, const PictureSettings& settings,
                              PictureBuffers& buffers);

} // namespace tool
