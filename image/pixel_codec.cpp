#include "image/pixel_codec.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>

#include <OpenImageIO/imageio.h>

#include "image/half_codec.h"

namespace image {

namespace {

/// Number of halfs that are converted at a time.
constexpr std::size_t HALF_RUN = 1024;

template <class Integer>
float to_float(Integer value) {
    return static_cast<float>(value) / static_cast<float>(std::numeric_limits<Integer>::max());
}
float to_float(float value) {
    return value;
}

template <class Integer>
void from_float(float value, Integer& result) {
    constexpr float MAX = std::numeric_limits<Integer>::max();
    const float clamped = value > 0.0f ? std::min(value, 1.0f) : 0.0f; // NaN fails the comparison
    result = static_cast<Integer>(clamped * MAX + 0.5f);
}
void from_float(float value, float& result) {
    result = value;
}

/// The first byte of pixel `index`.
template <class Byte>
Byte* get_pixel(Byte* pixels, std::ptrdiff_t stride, std::size_t index) {
    return pixels + stride * static_cast<std::ptrdiff_t>(index);
}

/// Stands for the type of a channel in overloads.
struct Half {};

template <class Value>
void decode_values(Value value, const std::byte* source, std::ptrdiff_t stride, int channels,
                   std::size_t pixels, float* target) {
    for (std::size_t pixel = 0; pixel < pixels; ++pixel, source += stride, target += WORKING_CHANNELS)
        for (int channel = 0; channel < channels; ++channel) {
            std::memcpy(&value, source + static_cast<std::size_t>(channel) * sizeof(Value), sizeof(Value));
            target[channel] = to_float(value);
        }
}

template <class Value>
void encode_values(Value value, const float* source, int channels, std::size_t pixels, std::byte* target,
                   std::ptrdiff_t stride) {
    for (std::size_t pixel = 0; pixel < pixels; ++pixel, source += WORKING_CHANNELS, target += stride)
        for (int channel = 0; channel < channels; ++channel) {
            from_float(source[channel], value);
            std::memcpy(target + static_cast<std::size_t>(channel) * sizeof(Value), &value, sizeof(Value));
        }
}

bool is_dense(std::ptrdiff_t stride, int channels) {
    return channels == WORKING_CHANNELS && stride == WORKING_CHANNELS * sizeof(std::uint16_t);
}

/// Calls `convert(first, count)` for runs of pixels with at most HALF_RUN channels together.
template <class Convert>
void for_half_runs(int channels, std::size_t pixels, const Convert& convert) {
    const std::size_t run = HALF_RUN / static_cast<std::size_t>(channels);
    for (std::size_t first = 0; first < pixels; first += run)
        convert(first, std::min(run, pixels - first));
}

/// Copies the channels together, converts them at once, and distributes them over the working row.
void decode_values(Half, const std::byte* source, std::ptrdiff_t stride, int channels, std::size_t pixels,
                   float* target) {
    if (is_dense(stride, channels))
        return decode_halfs(reinterpret_cast<const std::uint16_t*>(source), target,
                            pixels * WORKING_CHANNELS);
    const auto width = static_cast<std::size_t>(channels);
    std::uint16_t halfs[HALF_RUN];
    float floats[HALF_RUN];
    for_half_runs(channels, pixels, [&](std::size_t first, std::size_t count) {
        for (std::size_t i = 0; i < count; ++i)
            std::memcpy(halfs + i * width, get_pixel(source, stride, first + i),
                        width * sizeof(std::uint16_t));
        decode_halfs(halfs, floats, count * width);
        for (std::size_t i = 0; i < count; ++i)
            std::copy_n(floats + i * width, width, target + (first + i) * WORKING_CHANNELS);
    });
}

void encode_values(Half, const float* source, int channels, std::size_t pixels, std::byte* target,
                   std::ptrdiff_t stride) {
    if (is_dense(stride, channels))
        return encode_halfs(source, reinterpret_cast<std::uint16_t*>(target), pixels * WORKING_CHANNELS);
    const auto width = static_cast<std::size_t>(channels);
    std::uint16_t halfs[HALF_RUN];
    float floats[HALF_RUN];
    for_half_runs(channels, pixels, [&](std::size_t first, std::size_t count) {
        for (std::size_t i = 0; i < count; ++i)
            std::copy_n(source + (first + i) * WORKING_CHANNELS, width, floats + i * width);
        encode_halfs(floats, halfs, count * width);
        for (std::size_t i = 0; i < count; ++i)
            std::memcpy(get_pixel(target, stride, first + i), halfs + i * width,
                        width * sizeof(std::uint16_t));
    });
}

/// Calls `convert` with a value of the type of the channels; false for types that OpenImageIO converts.
template <class Convert>
bool with_value_of(OIIO::TypeDesc type, const Convert& convert) {
    switch (type.basetype) {
    case OIIO::TypeDesc::UINT8: // NOLINT(bugprone-branch-clone): each value has its own type
        convert(std::uint8_t());
        return true;
    case OIIO::TypeDesc::UINT16:
        convert(std::uint16_t());
        return true;
    case OIIO::TypeDesc::FLOAT:
        convert(float());
        return true;
    case OIIO::TypeDesc::HALF:
        convert(Half());
        return true;
    default:
        return false;
    }
}

} // namespace

void decode_channels(OIIO::TypeDesc type, const std::byte* source, std::ptrdiff_t stride, int channels,
                     std::size_t pixels, float* target) {
    const auto decode = [&](auto value) { decode_values(value, source, stride, channels, pixels, target); };
    if (!with_value_of(type, decode))
        OIIO::convert_image(channels, static_cast<int>(pixels), 1, 1, source, type,
                            static_cast<OIIO::stride_t>(stride), OIIO::AutoStride, OIIO::AutoStride, target,
                            OIIO::TypeFloat, WORKING_CHANNELS * sizeof(float), OIIO::AutoStride,
                            OIIO::AutoStride);
}

void encode_channels(OIIO::TypeDesc type, const float* source, int channels, std::size_t pixels,
                     std::byte* target, std::ptrdiff_t stride) {
    const auto encode = [&](auto value) { encode_values(value, source, channels, pixels, target, stride); };
    if (!with_value_of(type, encode))
        OIIO::convert_image(channels, static_cast<int>(pixels), 1, 1, source, OIIO::TypeFloat,
                            WORKING_CHANNELS * sizeof(float), OIIO::AutoStride, OIIO::AutoStride, target,
                            type, static_cast<OIIO::stride_t>(stride), OIIO::AutoStride, OIIO::AutoStride);
}

} // namespace image
