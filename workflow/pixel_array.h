#pragma once

#include <array>
#include <cstddef>

namespace workflow {

class Conversion;

/// Pixels in memory of the caller, in any order and at any distances: colors in a row, an image, several
/// images.
struct PixelArray {
    /// Of each channel. Integers stand for 0 to 1.
    enum Type { UINT8, UINT16, HALF, FLOAT };
    /// Number of axes that pixels are counted along.
    static constexpr std::size_t AXES = 3;

    std::byte* data = nullptr; ///< Red of the first pixel; aligned to the type, as are the strides.
    Type type = FLOAT;
    int channels = 4;                              ///< 3 or 4: red, green, blue and alpha.
    std::ptrdiff_t channel_stride = sizeof(float); ///< In bytes, from red to green and so on.
    std::array<std::size_t, AXES> extents = {};    ///< Pixels along each axis: images, rows, columns.
    std::array<std::ptrdiff_t, AXES> strides = {}; ///< In bytes; may be negative.
};

/// Writes the converted pixels of `source` to `target`, which has the same extents and channels, and may be
/// the same array; other overlaps give undefined colors. Packed floats of one array are converted in place
/// without a copy. Without alpha pixels are converted as the module does, with alpha 0. For integers, colors
/// are clamped to 0 to 1 and rounded to the nearest. `exposure` is that of `Conversion::apply`. Throws
/// diagnostics::Failure when a stage cannot be applied, or for arrays of other shapes; the pixels of `target`
/// are then undefined. Thread-safe for different targets.
void convert_pixels(const Conversion& conversion, const PixelArray& source, const PixelArray& target,
                    float exposure = 0);

} // namespace workflow
