#pragma once

#include <cstdint>
#include <string>

#include <OpenImageIO/imageio.h>

#include "image/part_plan.h"

namespace image {

/// Bytes that reading, converting and writing a planned part takes in this process and in the one that reads:
/// its pixels, those to be written, and the copies that OpenImageIO makes of them. An upper limit for the
/// usual formats; memory that does not depend on the size of the image is left out.
std::uint64_t estimate_part_memory(const OIIO::ImageSpec& input, const std::string& input_format,
                                   const PartPlan& plan, const FormatAbilities& output);

/// The same for a deep part, whose samples take `sample_bytes` in the file, uncompressed.
std::uint64_t estimate_deep_memory(const OIIO::ImageSpec& input, std::uint64_t sample_bytes,
                                   const PartPlan& plan);

/// Bytes that reading a part takes whose alpha is used for the colors of others.
std::uint64_t estimate_alpha_memory(const OIIO::ImageSpec& input, const std::string& input_format);
/// Bytes that this alpha takes from then on.
std::uint64_t get_alpha_bytes(const OIIO::ImageSpec& input);

} // namespace image
