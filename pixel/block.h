#pragma once

#include <cstddef>
#include <cstdint>

namespace pixel {

/// Pixels worked on at a time: four planes of this length fit the first-level cache beside a table.
constexpr std::size_t BLOCK_PIXELS = 512;
/// Most lanes a vector of floats has on any supported target; block lengths are rounded up to a multiple of
/// it.
constexpr std::size_t MAX_LANES = 16;

/// Some pixels, one plane per channel. `padded` is `count` rounded up to MAX_LANES; kernels may compute the
/// padding pixels too.
struct alignas(64) Block {
    float plane[4][BLOCK_PIXELS];
    std::size_t count;
    std::size_t padded;
};

inline std::size_t round_up_to_lanes(std::size_t count) {
    return (count + MAX_LANES - 1) / MAX_LANES * MAX_LANES;
}

/// Asks the second-level cache for the line `ahead` floats behind `from`, whether it belongs to the picture
/// or not, so that memory works while the kernels do. One request per line read keeps the queue short.
inline void fetch_for_next_block(const float* from, std::size_t ahead) {
    __builtin_prefetch(
        reinterpret_cast<const void*>(reinterpret_cast<std::uintptr_t>(from) + ahead * sizeof(float)), 0, 2);
}

} // namespace pixel
