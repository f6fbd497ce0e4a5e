#pragma once

#include <limits>
#include <string>
#include <vector>

#include "image/color_tags.h"

namespace viewer {

/// An image in memory: RGBA floats, rows from top to bottom, as the file holds them.
struct Image {
    std::string path;
    int width = 0;
    int height = 0;
    std::vector<float> rgba;
    image::ColorTags tags;
    std::string channels; ///< For the user: "R, G, B", or "Y" shown as gray.

    /// The four floats at a position inside the image.
    const float* at(int x, int y) const {
        return &rgba[(static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                      static_cast<std::size_t>(x)) *
                     4];
    }
};

/// Throws diagnostics::Failure (GPU_LIMIT) when an image has more pixels a side than the driver shows.
void check_side(const std::string& path, int width, int height, int max_side);

/// Reads the first color of the first part of a file; alpha is 1 where there is none. Throws
/// diagnostics::Failure, and reads no pixels, when the header announces more than `max_side` pixels a side or
/// than memory holds.
Image load_image(const std::string& path, int max_side = std::numeric_limits<int>::max());

} // namespace viewer
