#pragma once

#include <cstddef>

#include <OpenImageIO/typedesc.h>

namespace image {

/// Floats in one pixel of a working row: red, green, blue, alpha.
inline constexpr int WORKING_CHANNELS = 4;

/// Reads `channels` consecutive channels (at most 4) of `pixels` pixels, which are `stride` bytes apart, into
/// a working row, whose pixels are WORKING_CHANNELS floats apart. Integers become 0 to 1. `stride` may be 0
/// or negative.
void decode_channels(OIIO::TypeDesc type, const std::byte* source, std::ptrdiff_t stride, int channels,
                     std::size_t pixels, float* target);

/// Writes channels of a working row. For integer types values are clamped to 0 to 1 and rounded to the
/// nearest, and NaN becomes 0.
void encode_channels(OIIO::TypeDesc type, const float* source, int channels, std::size_t pixels,
                     std::byte* target, std::ptrdiff_t stride);

} // namespace image
