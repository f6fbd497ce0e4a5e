#pragma once

#include <cstddef>

namespace pixel {

/// Memory layout of a packed image.
struct PackedLayout {
    std::size_t width = 0;           ///< pixels
    std::size_t height = 0;          ///< pixels
    std::size_t channels = 4;        ///< at least 3: red, green, blue, alpha; others are unchanged
    std::ptrdiff_t pixel_stride = 0; ///< floats; 0: no gaps
    std::ptrdiff_t row_stride = 0;   ///< floats; 0: no gaps
};

} // namespace pixel
