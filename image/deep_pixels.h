#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include <OpenImageIO/deepdata.h>
#include <OpenImageIO/imageio.h>

#include "image/part_conversion.h"
#include "image/part_plan.h"
#include "image/pixel_layout.h"

namespace image {

/// The pixels of a deep part: each has any number of samples.
struct DeepPixels {
    std::vector<std::uint32_t> counts; ///< Samples of each pixel, row by row.
    /// The samples one after the other, pixel by pixel, in the layout of a pixel of the part's spec.
    PixelBuffer samples;
};

/// Number of all samples.
std::uint64_t count_samples(const std::vector<std::uint32_t>& counts);

/// Copies pixels to the buffer `target`: the counts, and after them the samples. `target` has room for
/// get_packed_bytes.
void pack(const OIIO::DeepData& pixels, std::byte* target);
std::size_t get_packed_bytes(const OIIO::DeepData& pixels);
/// Reads what `pack` wrote. False if `bytes` bytes do not fit the counts of the image's pixels. Throws
/// std::bad_alloc.
bool unpack(const std::byte* packed, std::size_t bytes, const OIIO::ImageSpec& spec, DeepPixels& pixels);

/// As OpenImageIO writes it to a part with that spec, in whose layout the samples are.
OIIO::DeepData make_deep_data(const DeepPixels& pixels, const OIIO::ImageSpec& spec);

/// Converts each sample as `convert_part` does a pixel: counts, order and data channels stay as they are.
std::vector<std::size_t> convert_deep_part(const OIIO::ImageSpec& input_spec, const DeepPixels& source,
                                           const PartPlan& plan, const OIIO::ImageSpec& output_spec,
                                           const ConvertRows& convert, int threads, DeepPixels& target);

} // namespace image
