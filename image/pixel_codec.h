#pragma once

#include <cstddef>

#include <OpenImageIO/typedesc.h>

namespace image {

/// Floats in one pixel of a working row: red, green, blue, alpha.
inline constexpr int WORKING_CHANNELS = 4;

/// Reads `channels` neighboring channels of `pixels` pixels that lie `stride` bytes apart into the working
/// row, whose pixels are WORKING_CHANNELS floats apart. Integers become 0 to 1.
void decode_channels(OIIO::TypeDesc type, const std::byte* source, std::size_t stride, int channels,
                     std::size_t pixels, float* target);

/// The reverse. Integers are clamped and rounded to the nearest; what is not a number becomes 0 there.
void encode_channels(OIIO::TypeDesc type, const float* source, int channels, std::size_t pixels,
                     std::byte* target, std::size_t stride);

} // namespace image
