#include "pixel/kernels.h"

#include <cstring>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "pixel/kernel_layout.cpp"
#include "pixel/vector_targets.h"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "pixel/lookup-inl.h"

HWY_BEFORE_NAMESPACE();
namespace pixel {
namespace HWY_NAMESPACE {

/// Lanes need not follow the order of the pixels, as long as packing undoes what unpacking did: groups of
/// four lanes then never cross a register, which is what is slow on wide vectors.
HWY_INLINE void unpack_vector(const float* pixels, std::size_t channels, std::size_t at, Block& block) {
    const hn::ScalableTag<float> d;
    auto r = hn::Zero(d), g = r, b = r, a = r;
#if HWY_TARGET != HWY_SCALAR
    if (channels == 4) {
        r = hn::LoadU(d, pixels);
        g = hn::LoadU(d, pixels + hn::Lanes(d));
        b = hn::LoadU(d, pixels + 2 * hn::Lanes(d));
        a = hn::LoadU(d, pixels + 3 * hn::Lanes(d));
        transpose_groups(d, r, g, b, a);
    } else {
        hn::LoadInterleaved3(d, pixels, r, g, b);
    }
#else
    r = hn::Set(d, pixels[0]);
    g = hn::Set(d, pixels[1]);
    b = hn::Set(d, pixels[2]);
    a = hn::Set(d, channels == 4 ? pixels[3] : 0.0f);
#endif
    hn::Store(r, d, block.own[0] + at);
    hn::Store(g, d, block.own[1] + at);
    hn::Store(b, d, block.own[2] + at);
    hn::Store(a, d, block.own[3] + at);
}

HWY_INLINE void pack_vector(const Block& block, std::size_t at, std::size_t channels, float* pixels) {
    const hn::ScalableTag<float> d;
    auto r = hn::Load(d, block.own[0] + at);
    auto g = hn::Load(d, block.own[1] + at);
    auto b = hn::Load(d, block.own[2] + at);
#if HWY_TARGET != HWY_SCALAR
    if (channels == 4) {
        auto a = hn::Load(d, block.own[3] + at);
        transpose_groups(d, r, g, b, a);
        hn::StoreU(r, d, pixels);
        hn::StoreU(g, d, pixels + hn::Lanes(d));
        hn::StoreU(b, d, pixels + 2 * hn::Lanes(d));
        hn::StoreU(a, d, pixels + 3 * hn::Lanes(d));
    } else {
        hn::StoreInterleaved3(r, g, b, d, pixels);
    }
#else
    pixels[0] = hn::GetLane(r);
    pixels[1] = hn::GetLane(g);
    pixels[2] = hn::GetLane(b);
    if (channels == 4) {
        pixels[3] = block.own[3][at];
    }
#endif
}

/// Calls `f(offset)` for each whole vector, and returns how many floats are left.
template <class F>
HWY_INLINE std::size_t for_whole_vectors(std::size_t count, F&& f) {
    const std::size_t lanes = hn::Lanes(hn::ScalableTag<float>());
    std::size_t i = 0;
    for (; i + lanes <= count; i += lanes) {
        f(i);
    }
    return count - i;
}

void unpack_pixels(const float* pixels, std::size_t channels, Block& block) {
    const std::size_t rest = for_whole_vectors(block.count, [&](std::size_t i) HWY_ATTR {
        unpack_vector(pixels + channels * i, channels, i, block);
    });
    if (rest > 0) {
        const std::size_t done = block.count - rest;
        float tail[4 * MAX_LANES] = {};
        std::memcpy(tail, pixels + channels * done, rest * channels * sizeof(float));
        unpack_vector(tail, channels, done, block);
    }
}

/// Prefetches the lines that the kernels have not prefetched.
void pack_pixels(Block& block, std::size_t channels, float* pixels) {
    const std::size_t rest = for_whole_vectors(block.count, [&](std::size_t i) HWY_ATTR {
        for (std::size_t c = 0; c < channels; ++c) {
            block.lookahead.fetch_line();
        }
        pack_vector(block, i, channels, pixels + channels * i);
    });
    if (rest > 0) {
        const std::size_t done = block.count - rest;
        float tail[4 * MAX_LANES];
        pack_vector(block, done, channels, tail);
        std::memcpy(pixels + channels * done, tail, rest * channels * sizeof(float));
    }
}

void take_planes(const float* const planes[4], std::size_t channels, const PlanePiece& piece, Block& block) {
    const hn::ScalableTag<float> d;
    for (std::size_t c = 0; c < channels; ++c) {
        const float* const from = planes[c] + piece.offset;
        float* const to = block.own[c] + piece.at;
        const std::size_t rest = for_whole_vectors(
            piece.length, [&](std::size_t i) HWY_ATTR { hn::StoreU(hn::LoadU(d, from + i), d, to + i); });
        std::memcpy(to + piece.length - rest, from + piece.length - rest, rest * sizeof(float));
    }
}

void give_planes(Block& block, std::size_t channels, const PlanePiece& piece, float* const planes[4]) {
    const hn::ScalableTag<float> d;
    for (std::size_t c = 0; c < channels; ++c) {
        const float* const from = block.own[c] + piece.at;
        float* const to = planes[c] + piece.offset;
        const std::size_t rest = for_whole_vectors(piece.length, [&](std::size_t i) HWY_ATTR {
            block.lookahead.fetch_line();
            hn::StoreU(hn::LoadU(d, from + i), d, to + i);
        });
        std::memcpy(to + piece.length - rest, from + piece.length - rest, rest * sizeof(float));
    }
}

} // namespace HWY_NAMESPACE
} // namespace pixel
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace pixel {

HWY_EXPORT(unpack_pixels);
HWY_EXPORT(pack_pixels);
HWY_EXPORT(take_planes);
HWY_EXPORT(give_planes);

void unpack(const float* pixels, std::size_t channels, Block& block) {
    HWY_DYNAMIC_DISPATCH(unpack_pixels)(pixels, channels, block);
}

void pack(Block& block, std::size_t channels, float* pixels) {
    HWY_DYNAMIC_DISPATCH(pack_pixels)(block, channels, pixels);
}

void take(const float* const planes[4], std::size_t channels, const PlanePiece& piece, Block& block) {
    HWY_DYNAMIC_DISPATCH(take_planes)(planes, channels, piece, block);
}

void give(Block& block, std::size_t channels, const PlanePiece& piece, float* const planes[4]) {
    HWY_DYNAMIC_DISPATCH(give_planes)(block, channels, piece, planes);
}

} // namespace pixel
#endif
