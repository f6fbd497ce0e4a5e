#include "pixel/kernels.h"

#include <cstdint>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "pixel/kernel_table.cpp"
#include "pixel/vector_targets.h"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "pixel/clamp-inl.h"
#include "pixel/fused-inl.h"
#include "pixel/lookup-inl.h"
#include "pixel/pixel-inl.h"
#include "pixel/planes-inl.h"

HWY_BEFORE_NAMESPACE();
namespace pixel {
namespace HWY_NAMESPACE {

/// Between two entries, `part` of the way from the first one of the arithmetic.
template <bool FUSED, class D>
HWY_INLINE hn::Vec<D> interpolate(D d, hn::Vec<D> below, hn::Vec<D> above, hn::Vec<D> part) {
    if constexpr (FUSED) {
        return multiply_add_once(d, hn::Sub(above, below), part, below);
    } else {
        return hn::Add(hn::Mul(hn::Sub(below, above), part), above);
    }
}

/// Looks for the entry above, which makes the results on entries exact, and keeps the part of the way to `x`
/// from the entry where the interpolation begins.
template <bool FUSED>
void table_plane(const TableStage& stage, std::size_t c, Block& block) {
    const hn::ScalableTag<float> d;
    const hn::RebindToSigned<decltype(d)> di;
    alignas(64) std::int32_t index[BLOCK_PIXELS];
    float* const plane = block.plane[c];
    const float* const values = stage.curve[static_cast<std::size_t>(stage.curve_of[c])].values.data();
    const auto scale = hn::Set(d, stage.before.scale[c]), offset = hn::Set(d, stage.before.offset[c]);
    const auto zero = hn::Zero(d), end = hn::Set(d, stage.last);
    for_each_vector(block, [&](std::size_t i) HWY_ATTR {
        const auto in = hn::Mul(hn::Add(hn::Mul(hn::Load(d, plane + i), scale), offset), end);
        const auto x = at_most(at_least(in, zero), end); // NaN becomes 0
        const auto above = hn::Ceil(x);
        hn::Store(to_index(d, above), di, index + i);
        hn::Store(FUSED ? hn::Sub(x, hn::Floor(x)) : hn::Sub(above, x), d, plane + i);
    });
    for_each_vector_and_line(block, [&](std::size_t i) HWY_ATTR {
        const auto part = hn::Load(d, plane + i);
        auto below = zero, above = zero;
        load_pairs(d, values, index + i, below, above);
        // On an entry the difference must be zero even where it would overflow.
        below = hn::IfThenElse(hn::Eq(part, zero), above, below);
        hn::Store(interpolate<FUSED>(d, below, above, part), d, plane + i);
    });
}

void table(const TableStage& stage, Block& block) {
    const auto run = stage.arithmetic == TableArithmetic::Fused ? table_plane<true> : table_plane<false>;
    for (std::size_t c = 0; c < 3; ++c) {
        run(stage, c, block);
    }
}

#if HWY_TARGET != HWY_SCALAR

template <bool FUSED>
HWY_INLINE PixelVec table_of_arithmetic_alone(const TableStage& stage, PixelVec pixel) {
    const PixelTag d;
    const auto zero = hn::Zero(d), end = hn::Set(d, stage.last);
    const auto scaled =
        hn::Add(hn::Mul(pixel, load_lanes(stage.before.scale)), load_lanes(stage.before.offset));
    const auto x = at_most(at_least(hn::Mul(scaled, end), zero), end);
    const auto ceiling = hn::Ceil(x);
    const auto part = FUSED ? hn::Sub(x, hn::Floor(x)) : hn::Sub(ceiling, x);
    auto below = zero, above = zero;
    load_pairs_of_curves(stage, d, to_index(d, ceiling), below, above);
    below = hn::IfThenElse(hn::Eq(part, zero), above, below);
    return keep_alpha(pixel, interpolate<FUSED>(d, below, above, part));
}

HWY_INLINE PixelVec table_alone(const TableStage& stage, PixelVec pixel) {
    return stage.arithmetic == TableArithmetic::Fused ? table_of_arithmetic_alone<true>(stage, pixel)
                                                      : table_of_arithmetic_alone<false>(stage, pixel);
}

#endif

PIXEL_KERNEL(TableStage, table, table_alone)

} // namespace HWY_NAMESPACE
} // namespace pixel
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace pixel {

HWY_EXPORT(table);
HWY_EXPORT(table_pixel);

void run_table(const TableStage& stage, Block& block) {
    HWY_DYNAMIC_DISPATCH(table)(stage, block);
}

PixelKernel pixel_kernel(const TableStage&) {
    return HWY_DYNAMIC_DISPATCH(table_pixel);
}

} // namespace pixel
#endif
