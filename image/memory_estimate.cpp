#include "image/memory_estimate.h"

#include <algorithm>
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

} // namespace image
