#include "workflow/pixel_array.h"

#include <algorithm>
#include <cstdint>
#include <vector>

#include "diagnostics/failure.h"
#include "image/pixel_codec.h"
#include "workflow/conversion.h"

namespace workflow {

namespace {

using image::WORKING_CHANNELS;

/// Pixels that are converted at a time: 256 KiB of working pixels, which stay in the cache of a core.
constexpr std::size_t BAND_PIXELS = 16384;
/// Converted at a time where they pass the cache once in any case; an unsigned int holds more.
constexpr std::size_t LONG_BAND_PIXELS = std::size_t{1} << 30;
/// So few are converted without allocating memory.
constexpr std::size_t FEW_PIXELS = 16;

OIIO::TypeDesc get_type(PixelArray::Type type) {
    switch (type) {
    case PixelArray::UINT8:
        return OIIO::TypeUInt8;
    case PixelArray::UINT16:
        return OIIO::TypeUInt16;
    case PixelArray::HALF:
        return OIIO::TypeHalf;
    case PixelArray::FLOAT:
        break;
    }
    return OIIO::TypeFloat;
}

bool has_adjacent_channels(const PixelArray& array) {
    return array.channel_stride == static_cast<std::ptrdiff_t>(get_type(array.type).size());
}

bool is_same(const PixelArray& a, const PixelArray& b) {
    return a.data == b.data && a.type == b.type && a.channel_stride == b.channel_stride &&
           a.strides == b.strides;
}

/// Whether a step along `axis` is as long as all steps along the next one.
bool continues(const PixelArray& array, std::size_t axis) {
    return array.strides[axis] ==
           array.strides[axis + 1] * static_cast<std::ptrdiff_t>(array.extents[axis + 1]);
}

void merge_axes(PixelArray& array, std::size_t axis) {
    array.extents[axis + 1] *= array.extents[axis];
    array.extents[axis] = 1;
}

/// Moves an axis of one pixel before the first one, so that others become neighbors.
void move_single_axes_to_front(PixelArray& array) {
    for (std::size_t axis = 1; axis < PixelArray::AXES; ++axis)
        if (array.extents[axis] == 1) {
            std::rotate(array.extents.begin(), array.extents.begin() + axis,
                        array.extents.begin() + axis + 1);
            std::rotate(array.strides.begin(), array.strides.begin() + axis,
                        array.strides.begin() + axis + 1);
        }
}

/// Makes runs of pixels along the last axis as long as both arrays allow.
void lengthen_runs(PixelArray& source, PixelArray& target) {
    for (std::size_t axis = 0; axis + 1 < PixelArray::AXES; ++axis) {
        move_single_axes_to_front(source);
        move_single_axes_to_front(target);
        if (continues(source, axis) && continues(target, axis)) {
            merge_axes(source, axis);
            merge_axes(target, axis);
        }
    }
}

void check(const PixelArray& source, const PixelArray& target) {
    if (source.extents != target.extents || source.channels != target.channels)
        diagnostics::fail(diagnostics::Code::USAGE, "the arrays have different shapes");
    if (source.channels != 3 && source.channels != WORKING_CHANNELS)
        diagnostics::fail(diagnostics::Code::USAGE, "the pixels have other channels than red, green, blue "
                                                    "and alpha");
}

/// Converts runs of pixels along the last axis.
class RunConverter {
public:
    RunConverter(const Conversion& conversion, const PixelArray& source, const PixelArray& target,
                 float exposure)
        : conversion(conversion), source(source), target(target), exposure(exposure),
          is_direct(is_same(source, target) && source.type == PixelArray::FLOAT &&
                    has_adjacent_channels(source) &&
                    source.strides.back() == static_cast<std::ptrdiff_t>(source.channels * sizeof(float))) {}

    void convert_all() {
        for (std::size_t i = 0; i < source.extents[0]; ++i)
            for (std::size_t j = 0; j < source.extents[1]; ++j)
                convert_run(get_start(source, i, j), get_start(target, i, j));
    }

private:
    static std::byte* get_start(const PixelArray& array, std::size_t i, std::size_t j) {
        return array.data + array.strides[0] * static_cast<std::ptrdiff_t>(i) +
               array.strides[1] * static_cast<std::ptrdiff_t>(j);
    }

    void convert_run(std::byte* from, std::byte* to) {
        const std::size_t pixels = source.extents.back();
        const bool is_one_pass = is_direct && conversion.get_stages().size() == 1 && exposure == 0;
        const std::size_t most = is_one_pass ? LONG_BAND_PIXELS : BAND_PIXELS;
        for (std::size_t first = 0; first < pixels; first += most) {
            const std::size_t count = std::min(most, pixels - first);
            const auto offset = static_cast<std::ptrdiff_t>(first);
            convert_band(from + source.strides.back() * offset, to + target.strides.back() * offset, count);
        }
    }

    void convert_band(std::byte* from, std::byte* to, std::size_t count) {
        if (is_direct)
            return conversion.apply(reinterpret_cast<float*>(to), static_cast<unsigned int>(count), 1,
                                    exposure, static_cast<unsigned int>(source.channels));
        float few[FEW_PIXELS * WORKING_CHANNELS];
        float* working = few;
        if (count > FEW_PIXELS) {
            band.resize(std::min(BAND_PIXELS, source.extents.back()) * WORKING_CHANNELS);
            working = band.data();
        }
        decode(from, count, working);
        conversion.apply(working, static_cast<unsigned int>(count), 1, exposure);
        encode(working, count, to);
    }

    void decode(const std::byte* from, std::size_t count, float* working) const {
        const OIIO::TypeDesc type = get_type(source.type);
        const std::ptrdiff_t stride = source.strides.back();
        if (source.channels < WORKING_CHANNELS)
            for (std::size_t i = 0; i < count; ++i)
                working[i * WORKING_CHANNELS + 3] = 0;
        if (has_adjacent_channels(source))
            return image::decode_channels(type, from, stride, source.channels, count, working);
        for (int channel = 0; channel < source.channels; ++channel)
            image::decode_channels(type, from + source.channel_stride * channel, stride, 1, count,
                                   working + channel);
    }

    void encode(const float* working, std::size_t count, std::byte* to) const {
        const OIIO::TypeDesc type = get_type(target.type);
        const std::ptrdiff_t stride = target.strides.back();
        if (has_adjacent_channels(target))
            return image::encode_channels(type, working, target.channels, count, to, stride);
        for (int channel = 0; channel < target.channels; ++channel)
            image::encode_channels(type, working + channel, 1, count, to + target.channel_stride * channel,
                                   stride);
    }

    const Conversion& conversion;
    const PixelArray& source;
    const PixelArray& target;
    const float exposure;
    const bool is_direct;
    std::vector<float> band;
};

} // namespace

void convert_pixels(const Conversion& conversion, const PixelArray& source, const PixelArray& target,
                    float exposure) {
    check(source, target);
    PixelArray from = source;
    PixelArray to = target;
    lengthen_runs(from, to);
    RunConverter(conversion, from, to, exposure).convert_all();
}

} // namespace workflow
