#pragma once

#include <string>
#include <vector>

namespace tool {

/// A picture in memory: RGBA floats, rows from top to bottom, as the file holds them.
struct Picture {
    std::string path;
    int width = 0;
    int height = 0;
    std::vector<float> rgba;
    std::string channels; ///< For the user: "R, G, B", or "Y" shown as grey.

    /// The four floats at a position inside the picture.
    const float* at(int x, int y) const {
        return &rgba[(static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                      static_cast<std::size_t>(x)) *
                     4];
    }
};

/// Reads the first colour of the first part of a file; alpha is 1 where there is none. Throws CommandError.
Picture load_picture(const std::string& path);

} // namespace tool
