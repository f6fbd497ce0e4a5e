#include "image/memory_estimate.h"

#include <algorithm>
#include <limits>
#include <string_view>

#include "image/part_conversion.h"

namespace image {

namespace {

/// How many copies of all pixels OpenImageIO keeps while it reads and writes a format, as measured.
struct FormatCopies {
    std::string_view format;
    unsigned int read;
    unsigned int written;
};

constexpr FormatCopies COPIES[] = {
    {"openexr", 0, 0}, {"png", 0, 0}, {"tiff", 0, 0}, {"jpeg", 0, 0}, {"dpx", 0, 1},
    {"cineon", 0, 1},  {"hdr", 0, 0}, {"sgi", 0, 0},  {"bmp", 0, 0},  {"pnm", 0, 0},
};
/// Of other formats, which may hold the whole image before they decode or encode it.
constexpr FormatCopies OTHER_COPIES = {"", 1, 2};

FormatCopies find_copies(const std::string& format) {
    const auto* const found = std::find_if(std::begin(COPIES), std::end(COPIES),
                                           [&](const FormatCopies& entry) { return format == entry.format; });
    return found == std::end(COPIES) ? OTHER_COPIES : *found;
}

/// Of the samples of a deep part when it is written: the reader's memory and those to be converted, as large
/// as in the input; the converted ones and those that OpenImageIO writes, as large as in the output.
constexpr std::uint64_t INPUT_COPIES = 2, OUTPUT_COPIES = 2;
/// Of each pixel: its count in three of them, and OpenImageIO's count, capacity and position.
constexpr std::uint64_t COUNT_BYTES = 6 * sizeof(std::uint32_t);

/// Formats without halfs may write floats.
std::uint64_t estimate_written_bytes(const OIIO::ImageSpec& spec, const std::string& format) {
    const std::uint64_t floats =
        spec.image_pixels() * static_cast<std::uint64_t>(spec.nchannels) * sizeof(float);
    return format != "openexr" && spec.format == OIIO::TypeHalf ? floats : spec.image_bytes(true);
}

} // namespace

std::uint64_t estimate_part_memory(const OIIO::ImageSpec& input, const std::string& input_format,
                                   const PartPlan& plan, const FormatAbilities& output) {
    const std::uint64_t read = input.image_bytes(true);
    const std::uint64_t written = estimate_written_bytes(plan.spec, output.name);
    const bool in_place = input_format == output.name && can_convert_in_place(input, plan, plan.spec);
    return read * (1 + find_copies(input_format).read) +
           written * ((in_place ? 0 : 1) + find_copies(output.name).written);
}

/// OpenImageIO also needs a pointer to each channel of each pixel.
std::uint64_t estimate_deep_memory(const OIIO::ImageSpec& input, std::uint64_t sample_bytes,
                                   const PartPlan& plan) {
    const auto channels = static_cast<std::uint64_t>(std::max(input.nchannels, plan.spec.nchannels));
    const double growth =
        static_cast<double>(plan.spec.pixel_bytes(true)) / static_cast<double>(input.pixel_bytes(true));
    const double copies = static_cast<double>(INPUT_COPIES) + static_cast<double>(OUTPUT_COPIES) * growth;
    const double samples = static_cast<double>(sample_bytes) * copies;
    const auto most = static_cast<double>(std::numeric_limits<std::int64_t>::max());
    return input.image_pixels() * (COUNT_BYTES + channels * sizeof(void*)) +
           static_cast<std::uint64_t>(std::min(samples, most));
}

std::uint64_t estimate_alpha_memory(const OIIO::ImageSpec& input, const std::string& input_format) {
    return input.image_bytes(true) * (1 + find_copies(input_format).read);
}

std::uint64_t get_alpha_bytes(const OIIO::ImageSpec& input) {
    return input.image_pixels() * sizeof(float);
}

} // namespace image
