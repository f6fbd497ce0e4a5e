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

template <class Value>
void decode_values(const std::byte* source, std::size_t stride, int channels, std::size_t pixels,
                   float* target) {
    for (std::size_t pixel = 0; pixel < pixels; ++pixel, source += stride, target += WORKING_CHANNELS)
        for (int channel = 0; channel < channels; ++channel) {
            Value value;
            std::memcpy(&value, source + static_cast<std::size_t>(channel) * sizeof(Value), sizeof(Value));
            target[channel] = to_float(value);
        }
}

template <class Value>
void encode_values(const float* source, int channels, std::size_t pixels, std::byte* target,
                   std::size_t stride) {
    for (std::size_t pixel = 0; pixel < pixels; ++pixel, source += WORKING_CHANNELS, target += stride)
        for (int channel = 0; channel < channels; ++channel) {
            Value value;
            from_float(source[channel], value);
            std::memcpy(target + static_cast<std::size_t>(channel) * sizeof(Value), &value, sizeof(Value));
        }
}

bool is_dense(std::size_t stride, int channels) {
    return channels == WORKING_CHANNELS && stride == WORKING_CHANNELS * sizeof(std::uint16_t);
}

/// Copies the channels together, converts them at once, and distributes them over the working row.
void decode_half_values(const std::byte* source, std::size_t stride, int channels, std::size_t pixels,
                        float* target) {
    std::uint16_t halfs[HALF_RUN];
    float floats[HALF_RUN];
    const std::size_t bytes = static_cast<std::size_t>(channels) * sizeof(std::uint16_t);
    const std::size_t run = HALF_RUN / static_cast<std::size_t>(channels);
    for (std::size_t done = 0; done < pixels; done += run) {
        const std::size_t count = std::min(run, pixels - done);
        for (std::size_t i = 0; i < count; ++i)
            std::memcpy(halfs + i * static_cast<std::size_t>(channels), source + (done + i) * stride, bytes);
        decode_halfs(halfs, floats, count * static_cast<std::size_t>(channels));
        for (std::size_t i = 0; i < count; ++i)
            for (int channel = 0; channel < channels; ++channel)
                target[(done + i) * WORKING_CHANNELS + static_cast<std::size_t>(channel)] =
                    floats[i * static_cast<std::size_t>(channels) + static_cast<std::size_t>(channel)];
    }
}

void encode_half_values(const float* source, int channels, std::size_t pixels, std::byte* target,
                        std::size_t stride) {
    std::uint16_t halfs[HALF_RUN];
    float floats[HALF_RUN];
    const std::size_t bytes = static_cast<std::size_t>(channels) * sizeof(std::uint16_t);
    const std::size_t run = HALF_RUN / static_cast<std::size_t>(channels);
    for (std::size_t done = 0; done < pixels; done += run) {
        const std::size_t count = std::min(run, pixels - done);
        for (std::size_t i = 0; i < count; ++i)
            for (int channel = 0; channel < channels; ++channel)
                floats[i * static_cast<std::size_t>(channels) + static_cast<std::size_t>(channel)] =
                    source[(done + i) * WORKING_CHANNELS + static_cast<std::size_t>(channel)];
        encode_halfs(floats, halfs, count * static_cast<std::size_t>(channels));
        for (std::size_t i = 0; i < count; ++i)
            std::memcpy(target + (done + i) * stride, halfs + i * static_cast<std::size_t>(channels), bytes);
    }
}

} // namespace

void decode_channels(OIIO::TypeDesc type, const std::byte* source, std::size_t stride, int channels,
                     std::size_t pixels, float* target) {
    switch (type.basetype) {
    case OIIO::TypeDesc::UINT8:
        return decode_values<std::uint8_t>(source, stride, channels, pixels, target);
    case OIIO::TypeDesc::UINT16:
        return decode_values<std::uint16_t>(source, stride, channels, pixels, target);
    case OIIO::TypeDesc::FLOAT:
        return decode_values<float>(source, stride, channels, pixels, target);
    case OIIO::TypeDesc::HALF:
        if (is_dense(stride, channels))
            return decode_halfs(reinterpret_cast<const std::uint16_t*>(source), target,
                                pixels * WORKING_CHANNELS);
        return decode_half_values(source, stride, channels, pixels, target);
    default:
        OIIO::convert_image(channels, static_cast<int>(pixels), 1, 1, source, type,
                            static_cast<OIIO::stride_t>(stride), OIIO::AutoStride, OIIO::AutoStride, target,
                            OIIO::TypeFloat, WORKING_CHANNELS * sizeof(float), OIIO::AutoStride,
                            OIIO::AutoStride);
    }
}

void encode_channels(OIIO::TypeDesc type, const float* source, int channels, std::size_t pixels,
                     std::byte* target, std::size_t stride) {
    switch (type.basetype) {
    case OIIO::TypeDesc::UINT8:
        return encode_values<std::uint8_t>(source, channels, pixels, target, stride);
    case OIIO::TypeDesc::UINT16:
        return encode_values<std::uint16_t>(source, channels, pixels, target, stride);
    case OIIO::TypeDesc::FLOAT:
        return encode_values<float>(source, channels, pixels, target, stride);
    case OIIO::TypeDesc::HALF:
        if (is_dense(stride, channels))
            return encode_halfs(source, reinterpret_cast<std::uint16_t*>(target), pixels * WORKING_CHANNELS);
        return encode_half_values(source, channels, pixels, target, stride);
    default:
        OIIO::convert_image(channels, static_cast<int>(pixels), 1, 1, source, OIIO::TypeFloat,
                            WORKING_CHANNELS * sizeof(float), OIIO::AutoStride, OIIO::AutoStride, target,
                            type, static_cast<OIIO::stride_t>(stride), OIIO::AutoStride, OIIO::AutoStride);
    }
}

} // namespace image
