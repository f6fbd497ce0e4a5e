#pragma once

#include <cstddef>
#include <cstdint>

namespace image {

/// Converts between IEEE 754 binary16 (as its bits) and float, with the widest vectors of the processor.
/// Rounds to nearest even; too large values become infinite.
void decode_halfs(const std::uint16_t* halfs, float* floats, std::size_t count);
void encode_halfs(const float* floats, std::uint16_t* halfs, std::size_t count);

} // namespace image
