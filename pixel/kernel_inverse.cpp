#include "pixel/kernels.h"

#include <cstdint>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "pixel/kernel_inverse.cpp"
#include "pixel/vector_targets.h"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "pixel/inverse_index.h"
#include "pixel/lookup-inl.h"

HWY_BEFORE_NAMESPACE();
namespace pixel {
namespace HWY_NAMESPACE {

/// Lanes whose bucket holds several knots, searched one by one.
template <class D, class M>
HWY_NOINLINE hn::Vec<D> search_lanes(D d, const InverseCurve& curve, M crowded, hn::Vec<D> value,
                                     hn::Vec<D> out) {
    constexpr std::size_t N = hn::MaxLanes(d);
    alignas(64) float values[N], results[N], flags[N];
    hn::Store(value, d, values);
    hn::Store(out, d, results);
    hn::Store(hn::IfThenElseZero(crowded, hn::Set(d, 1.0f)), d, flags);
    for (std::size_t i = 0; i < N; ++i) {
        if (flags[i] != 0) {
            results[i] = search_position(curve, values[i]);
        }
    }
    return hn::Load(d, results);
}

void inverse_plane(const InverseCurve& curve, float* plane, std::size_t count) {
    const hn::ScalableTag<float> d;
    const hn::RebindToSigned<decltype(d)> di;
    alignas(64) std::int32_t bucket[BLOCK_PIXELS];
    const auto sign = hn::Set(d, curve.sign), bias = hn::Set(d, curve.bias);
    const auto low = hn::Set(d, curve.sorted.front()), high = hn::Set(d, curve.sorted.back());
    const auto base = hn::Set(di, static_cast<std::int32_t>(curve.base));
    for (std::size_t i = 0; i < count; i += hn::Lanes(d)) {
        const auto in = hn::Mul(hn::Load(d, plane + i), sign);
        auto x = hn::IfThenElse(hn::Gt(in, low), in, low);
        x = hn::IfThenElse(hn::Lt(x, high), x, high);
        const auto key = hn::Sub(hn::BitCast(di, hn::Add(x, bias)), base);
        hn::Store(hn::ShiftRightSame(key, curve.shift), di, bucket + i);
        hn::Store(hn::IfThenElse(hn::IsNaN(in), in, x), d, plane + i); // NaN goes through all that follows
    }
    const auto* table = reinterpret_cast<const float*>(curve.knots.data());
    const auto one = hn::Set(d, 1.0f), reciprocal = hn::Set(d, curve.reciprocal);
    for (std::size_t i = 0; i < count; i += hn::Lanes(d)) {
        const auto x = hn::Load(d, plane + i);
        auto below = x, at = x, above = x, index = x;
        load_quads<4>(d, table, bucket + i, below, at, above, index);
        const auto after = hn::Gt(x, at);
        const auto from = hn::IfThenElse(after, at, below);
        const auto to = hn::IfThenElse(after, above, at);
        const auto whole = hn::IfThenElse(after, index, hn::Sub(index, one));
        auto position = hn::Add(whole, hn::Div(hn::Sub(x, from), hn::Sub(to, from)));
        const auto crowded = hn::IsNaN(index);
        if (HWY_UNLIKELY(!hn::AllFalse(d, crowded))) {
            position = search_lanes(d, curve, crowded, x, position);
        }
        hn::Store(hn::Mul(position, reciprocal), d, plane + i);
    }
}

/// A curve that does not rise or fall anywhere has one position for every value, NaN included.
void constant_plane(const InverseCurve& curve, float* plane, std::size_t count) {
    const hn::ScalableTag<float> d;
    const auto out = hn::Set(d, static_cast<float>(curve.first) * curve.reciprocal);
    for (std::size_t i = 0; i < count; i += hn::Lanes(d)) {
        hn::Store(out, d, plane + i);
    }
}

void inverse_table(const InverseTableStage& stage, Block& block) {
    for (int c = 0; c < 3; ++c) {
        const auto& curve =
            stage.curve[static_cast<std::size_t>(stage.curve_of[static_cast<std::size_t>(c)])];
        const auto run = curve.sorted.size() > 1 ? inverse_plane : constant_plane;
        run(curve, block.plane[c], block.padded);
    }
}

} // namespace HWY_NAMESPACE
} // namespace pixel
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace pixel {

HWY_EXPORT(inverse_table);

void run_inverse_table(const InverseTableStage& stage, Block& block) {
    HWY_DYNAMIC_DISPATCH(inverse_table)(stage, block);
}

} // namespace pixel
#endif
