#pragma once

#include <cstddef>
#include <cstdint>

namespace image {

/// Convert between IEEE 754 binary16 (as bits) and float, with SIMD code. Encoding rounds to nearest even;
/// too large values become infinite.
void decode_halfs(const std::uint16_t* halfs, float* floats, std::size_t count);
void encode_halfs(const float* floats, std::uint16_t* halfs, std::size_t count);

} // namespace image
