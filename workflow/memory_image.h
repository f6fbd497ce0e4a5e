#pragma once

#include <string>

#include <OpenImageIO/imageio.h>

#include "diagnostics/diagnostic.h"
#include "image/part_plan.h"
#include "image/pixel_layout.h"
#include "image/reader_process.h"

namespace workflow {

/// One part of an image in memory, whose channels all have one type.
struct MemoryImage {
    OIIO::ImageSpec spec; ///< With the metadata, "oiio:UnassociatedAlpha" for straight alpha.
    std::string format;   ///< OpenImageIO's name of the file's format; empty if it was not read from a file.
    image::PixelBuffer pixels; ///< Without gaps.
};

/// Number of parts in the file at `path`. Throws like `read_image`.
unsigned int count_image_parts(const std::string& path, image::ReaderProcess& reader);

/// Reads part `part`, from 0, at full resolution. Colors are as stored; channels of different types become
/// floats. Throws diagnostics::Failure when the file cannot be read, has no such part, or the part is deep.
MemoryImage read_image(const std::string& path, unsigned int part, image::ReaderProcess& reader);

/// Writes the image to a file, which replaces `path` only when everything succeeded, with colors as they are,
/// except that alpha becomes straight or premultiplied where the format demands it. `options.alpha_rule` does
/// not matter. Returns notes about what the format cannot have. Throws diagnostics::Failure with the file and
/// the reason.
diagnostics::Diagnostics write_image(const MemoryImage& image, const std::string& path,
                                     image::OutputOptions options);

} // namespace workflow
