/// The loop of every kernel.
/// Included once per target, after hwy/highway.h.
#if defined(PIXEL_PLANES_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef PIXEL_PLANES_INL_H_
#undef PIXEL_PLANES_INL_H_
#else
#define PIXEL_PLANES_INL_H_
#endif

#include <cstddef>

#include <hwy/highway.h>

#include "pixel/block.h"

HWY_BEFORE_NAMESPACE();
namespace pixel {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

/// Calls `f(offset in the planes)` for each vector of the block.
template <class F>
HWY_INLINE void for_each_vector(const Block& block, F&& f) {
    for (std::size_t i = 0; i < block.padded; i += hn::Lanes(hn::ScalableTag<float>())) {
        f(i);
    }
}

/// For loops that take long enough over each vector for a line of memory to arrive meanwhile.
template <class F>
HWY_INLINE void for_each_vector_and_line(Block& block, F&& f) {
    for (std::size_t i = 0; i < block.padded; i += hn::Lanes(hn::ScalableTag<float>())) {
        block.lookahead.fetch_line();
        f(i);
    }
}

/// Replaces the values of a plane by `f(values)`.
template <class F>
HWY_INLINE void map_plane(Block& block, std::size_t channel, F&& f) {
    const hn::ScalableTag<float> d;
    float* const plane = block.plane[channel];
    for_each_vector(block,
                    [&](std::size_t i) HWY_ATTR { hn::Store(f(hn::Load(d, plane + i)), d, plane + i); });
}

/// The same, for functions that take long.
template <class F>
HWY_INLINE void map_plane_slowly(Block& block, std::size_t channel, F&& f) {
    const hn::ScalableTag<float> d;
    float* const plane = block.plane[channel];
    for_each_vector_and_line(block, [&](std::size_t i)
                                        HWY_ATTR { hn::Store(f(hn::Load(d, plane + i)), d, plane + i); });
}

} // namespace HWY_NAMESPACE
} // namespace pixel
HWY_AFTER_NAMESPACE();

#endif
