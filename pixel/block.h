#pragma once

#include <algorithm>
#include <cstddef>

#include "pixel/lookahead.h"

namespace pixel {

/// Pixels of a block: four planes of this length fit into the first-level cache together with a LUT.
constexpr std::size_t BLOCK_PIXELS = 512;
/// Most float lanes of a vector on any supported target; block lengths are rounded up to a multiple of it.
constexpr std::size_t MAX_LANES = 16;

/// Some pixels, one plane per channel. `padded` is `count` rounded up to MAX_LANES; kernels may compute the
/// padding pixels too. Planes start at cache lines: they are `own`, or part of a planar image, which has no
/// padding pixels.
struct alignas(64) Block {
    float own[4][BLOCK_PIXELS];
    float* plane[4] = {own[0], own[1], own[2], own[3]};
    std::size_t count;
    std::size_t padded;
    Lookahead lookahead;

    Block() = default;
    Block(const Block&) = delete;
    Block& operator=(const Block&) = delete;
};

/// `count` rounded up to a multiple of MAX_LANES.
inline std::size_t round_up_to_lanes(std::size_t count) {
    return (count + MAX_LANES - 1) / MAX_LANES * MAX_LANES;
}

/// Runs `kernel(block)` for one pixel of four floats.
template <class F>
void run_on_block_of_one(float* rgba, F&& kernel) {
    Block block;
    block.count = 1;
    block.padded = round_up_to_lanes(1);
    for (std::size_t c = 0; c < 4; ++c) {
        std::fill(block.plane[c], block.plane[c] + block.padded, rgba[c]);
    }
    kernel(block);
    for (std::size_t c = 0; c < 4; ++c) {
        rgba[c] = block.plane[c][0];
    }
}

} // namespace pixel
