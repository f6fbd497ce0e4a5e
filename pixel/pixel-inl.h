/// Helpers for kernels for single pixels: one vector whose four lanes are red, green, blue and alpha. Lanes
/// go through the same operations as in the kernels for blocks, so the results have the same bits. Included
/// once per target, after hwy/highway.h.
#if defined(PIXEL_PIXEL_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef PIXEL_PIXEL_INL_H_
#undef PIXEL_PIXEL_INL_H_
#else
#define PIXEL_PIXEL_INL_H_
#endif

#include <hwy/highway.h>

#include "pixel/block.h"

HWY_BEFORE_NAMESPACE();
namespace pixel {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

#undef PIXEL_KERNEL
#if HWY_TARGET == HWY_SCALAR

/// Without vectors a block of one pixel is as good.
#define PIXEL_KERNEL(STAGE, BLOCK_KERNEL, ALONE)                                                             \
    void BLOCK_KERNEL##_pixel(const void* stage, float* rgba) {                                              \
        run_on_block_of_one(                                                                                 \
            rgba, [stage](Block& block) { BLOCK_KERNEL(*static_cast<const STAGE*>(stage), block); });        \
    }

#else

/// Defines `BLOCK_KERNEL_pixel(stage, rgba)` by way of `ALONE(stage, pixel)`, which takes and returns a
/// vector.
#define PIXEL_KERNEL(STAGE, BLOCK_KERNEL, ALONE)                                                             \
    void BLOCK_KERNEL##_pixel(const void* stage, float* rgba) {                                              \
        const PixelTag d;                                                                                    \
        hn::StoreU(ALONE(*static_cast<const STAGE*>(stage), hn::LoadU(d, rgba)), d, rgba);                   \
    }

using PixelTag = hn::FixedTag<float, 4>;
using PixelVec = hn::Vec<PixelTag>;

HWY_INLINE PixelVec load_lanes(const float (&lanes)[4]) {
    return hn::LoadU(PixelTag(), lanes);
}

/// Red, green and blue of `color`, alpha of `pixel`.
HWY_INLINE PixelVec keep_alpha(PixelVec pixel, PixelVec color) {
    const PixelTag d;
    return hn::IfThenElse(hn::FirstN(d, 3), color, pixel);
}

/// `changed` in the channels whose lane is not 0.
HWY_INLINE PixelVec choose_lanes(const float (&lanes)[4], PixelVec changed, PixelVec pixel) {
    return hn::IfThenElse(hn::Ne(load_lanes(lanes), hn::Zero(PixelTag())), changed, pixel);
}

#endif

} // namespace HWY_NAMESPACE
} // namespace pixel
HWY_AFTER_NAMESPACE();

#endif
