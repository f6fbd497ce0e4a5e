#pragma once

#include <cstddef>

#include "pixel/lookahead.h"

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
    Lookahead lookahead;
};

inline std::size_t round_up_to_lanes(std::size_t count) {
    return (count + MAX_LANES - 1) / MAX_LANES * MAX_LANES;
}

} // namespace pixel
