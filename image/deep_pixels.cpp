#include "image/deep_pixels.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>
#include <numeric>

namespace image {

namespace {

/// Samples are converted as rows of an image of this width, the last one padded.
constexpr std::uint64_t ROW_SAMPLES = 4096;

/// An image of as many pixels as there are samples, or a few more. Throws std::bad_alloc if there are more
/// than an image can have.
OIIO::ImageSpec make_sample_spec(const OIIO::ImageSpec& spec, std::uint64_t samples) {
    const std::uint64_t rows = (samples + ROW_SAMPLES - 1) / ROW_SAMPLES;
    if (rows > static_cast<std::uint64_t>(std::numeric_limits<int>::max()))
        throw std::bad_alloc();
    OIIO::ImageSpec result = spec;
    result.deep = false;
    result.x = result.y = result.z = 0;
    result.width = static_cast<int>(std::min(samples, ROW_SAMPLES));
    result.height = static_cast<int>(rows);
    result.depth = 1;
    return result;
}

std::vector<OIIO::TypeDesc> get_types(const OIIO::ImageSpec& spec) {
    std::vector<OIIO::TypeDesc> types;
    spec.get_channelformats(types);
    return types;
}

} // namespace

std::uint64_t count_samples(const std::vector<std::uint32_t>& counts) {
    return std::accumulate(counts.begin(), counts.end(), std::uint64_t(0));
}

std::size_t get_packed_bytes(const OIIO::DeepData& pixels) {
    std::size_t bytes = static_cast<std::size_t>(pixels.pixels()) * sizeof(std::uint32_t);
    for (std::int64_t pixel = 0; pixel < pixels.pixels(); ++pixel)
        bytes += static_cast<std::size_t>(pixels.samples(pixel)) * pixels.samplesize();
    return bytes;
}

void pack(const OIIO::DeepData& pixels, std::byte* target) {
    std::byte* sample = target + static_cast<std::size_t>(pixels.pixels()) * sizeof(std::uint32_t);
    for (std::int64_t pixel = 0; pixel < pixels.pixels(); ++pixel) {
        const auto count = static_cast<std::uint32_t>(pixels.samples(pixel));
        std::memcpy(target, &count, sizeof(count));
        target += sizeof(count);
        const std::size_t bytes = count * pixels.samplesize();
        if (bytes > 0)
            std::memcpy(sample, pixels.data_ptr(pixel, 0, 0), bytes);
        sample += bytes;
    }
}

bool unpack(const std::byte* packed, std::size_t bytes, const OIIO::ImageSpec& spec, DeepPixels& pixels) {
    const std::size_t count_bytes = spec.image_pixels() * sizeof(std::uint32_t);
    if (bytes < count_bytes)
        return false;
    pixels.counts.resize(spec.image_pixels());
    std::memcpy(pixels.counts.data(), packed, count_bytes);
    const std::size_t sample_bytes = spec.pixel_bytes(true);
    const std::uint64_t samples = count_samples(pixels.counts);
    if (samples > bytes || samples * sample_bytes != bytes - count_bytes)
        return false;
    if (samples == 0)
        return true;
    pixels.samples.resize(make_sample_spec(spec, samples).image_bytes(true));
    std::memcpy(pixels.samples.data(), packed + count_bytes, bytes - count_bytes);
    // The rest of the last row is converted, too, but never used.
    std::memset(pixels.samples.data() + samples * sample_bytes, 0,
                pixels.samples.size() - samples * sample_bytes);
    return true;
}

OIIO::DeepData make_deep_data(const DeepPixels& pixels, const OIIO::ImageSpec& spec) {
    OIIO::DeepData data;
    data.init(static_cast<std::int64_t>(pixels.counts.size()), spec.nchannels, get_types(spec),
              spec.channelnames);
    data.set_all_samples(pixels.counts);
    const std::byte* sample = pixels.samples.data();
    for (std::size_t pixel = 0; pixel < pixels.counts.size(); ++pixel) {
        const std::size_t bytes = pixels.counts[pixel] * data.samplesize();
        if (bytes > 0)
            std::memcpy(data.data_ptr(static_cast<std::int64_t>(pixel), 0, 0), sample, bytes);
        sample += bytes;
    }
    return data;
}

std::vector<std::size_t> convert_deep_part(const OIIO::ImageSpec& input_spec, const DeepPixels& source,
                                           const PartPlan& plan, const OIIO::ImageSpec& output_spec,
                                           const ConvertRows& convert, int threads, DeepPixels& target) {
    target.counts = source.counts;
    const std::uint64_t samples = count_samples(source.counts);
    if (samples == 0)
        return {};
    const OIIO::ImageSpec from = make_sample_spec(input_spec, samples);
    const OIIO::ImageSpec to = make_sample_spec(output_spec, samples);
    target.samples.resize(to.image_bytes(true));
    return convert_part(from, source.samples, plan, to, convert, threads, target.samples);
}

} // namespace image
