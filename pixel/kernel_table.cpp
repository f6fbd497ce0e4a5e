#include "pixel/kernels.h"

#include <cstdint>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "pixel/kernel_table.cpp"
#include "pixel/vector_targets.h"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "pixel/lookup-inl.h"

HWY_BEFORE_NAMESPACE();
namespace pixel {
namespace HWY_NAMESPACE {

/// Interpolates from the entry above: (below - above) * distance + above, which is exact on the entries.
void table_plane(const float* values, float last, float* plane, std::size_t count) {
    const hn::ScalableTag<float> d;
    const hn::RebindToSigned<decltype(d)> di;
    alignas(64) std::int32_t index[BLOCK_PIXELS];
    const auto zero = hn::Zero(d);
    const auto end = hn::Set(d, last);
    for (std::size_t i = 0; i < count; i += hn::Lanes(d)) {
        auto x = hn::Mul(hn::Load(d, plane + i), end);
        x = hn::IfThenElseZero(hn::Gt(x, zero), x); // NaN becomes 0
        x = hn::IfThenElse(hn::Lt(x, end), x, end);
        const auto above = hn::Ceil(x);
        hn::Store(hn::ConvertTo(di, above), di, index + i);
        hn::Store(hn::Sub(above, x), d, plane + i);
    }
    for (std::size_t i = 0; i < count; i += hn::Lanes(d)) {
        const auto distance = hn::Load(d, plane + i);
        auto below = zero, above = zero;
        load_pairs(d, values, index + i, below, above);
        // On an entry the difference must be zero even where it would overflow.
        below = hn::IfThenElse(hn::Eq(distance, zero), above, below);
        hn::Store(hn::Add(hn::Mul(hn::Sub(below, above), distance), above), d, plane + i);
    }
}

void table(const TableStage& stage, Block& block) {
    for (int c = 0; c < 3; ++c) {
        const auto& curve =
            stage.curve[static_cast<std::size_t>(stage.curve_of[static_cast<std::size_t>(c)])];
        table_plane(curve.values.data(), stage.last, block.plane[c], block.padded);
    }
}

} // namespace HWY_NAMESPACE
} // namespace pixel
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace pixel {

HWY_EXPORT(table);

void run_table(const TableStage& stage, Block& block) {
    HWY_DYNAMIC_DISPATCH(table)(stage, block);
}

} // namespace pixel
#endif
