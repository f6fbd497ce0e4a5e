/// Positions of values in a monotonic curve, by way of its knot buckets.
/// Included once per target, after hwy/highway.h.
#if defined(PIXEL_INVERSE_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef PIXEL_INVERSE_INL_H_
#undef PIXEL_INVERSE_INL_H_
#else
#define PIXEL_INVERSE_INL_H_
#endif

#include <cstddef>
#include <cstdint>

#include <hwy/highway.h>

#include "pixel/clamp-inl.h"
#include "pixel/inverse_index.h"
#include "pixel/lookup-inl.h"

HWY_BEFORE_NAMESPACE();
namespace pixel {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

/// Returns the bucket of each value, and replaces the value by its clamped and signed form; NaN stays NaN in
/// this and all following steps.
template <class D>
HWY_INLINE hn::Vec<hn::RebindToSigned<D>> find_bucket(D d, const InverseCurve& curve, hn::Vec<D>& value) {
    const hn::RebindToSigned<D> di;
    const auto low = hn::Set(d, curve.sorted.front()), high = hn::Set(d, curve.sorted.back());
    const auto in = hn::Mul(value, hn::Set(d, curve.sign));
    const auto x = at_most(at_least(in, low), high);
    value = hn::IfThenElse(hn::IsNaN(in), in, x);
    const auto key = hn::BitCast(di, hn::Add(x, hn::Set(d, curve.bias)));
    return hn::ShiftRightSame(hn::Sub(key, hn::Set(di, static_cast<std::int32_t>(curve.base))), curve.shift);
}

/// A position between two entries: the lower one's index, and the part of the way to the next.
template <class D>
struct Place {
    hn::Vec<D> whole, part;
    hn::Mask<D> crowded; ///< lanes whose bucket holds several knots: not found here
};

template <class D>
HWY_INLINE Place<D> locate_at_knot(D d, const float* knots, const std::int32_t* bucket, hn::Vec<D> x) {
    auto below = x, at = x, above = x, index = x;
    load_quads<4>(d, knots, bucket, below, at, above, index);
    const auto after = hn::Gt(x, at);
    const auto from = hn::IfThenElse(after, at, below);
    const auto to = hn::IfThenElse(after, above, at);
    const auto whole = hn::IfThenElse(after, index, hn::Sub(index, hn::Set(d, 1.0f)));
    return {whole, hn::Div(hn::Sub(x, from), hn::Sub(to, from)), hn::IsNaN(index)};
}

/// Looks for the crowded lanes one by one.
template <class D>
HWY_NOINLINE void search_lanes(D d, const InverseCurve& curve, hn::Vec<D> x, Place<D>& place) {
    constexpr std::size_t N = hn::MaxLanes(d);
    alignas(64) float value[N], whole[N], part[N], crowded[N];
    hn::Store(x, d, value);
    hn::Store(place.whole, d, whole);
    hn::Store(place.part, d, part);
    hn::Store(hn::IfThenElseZero(place.crowded, hn::Set(d, 1.0f)), d, crowded);
    for (std::size_t i = 0; i < N; ++i) {
        if (crowded[i] != 0) {
            const Position found = search_position(curve, value[i]);
            whole[i] = static_cast<float>(found.index);
            part[i] = found.part;
        }
    }
    place.whole = hn::Load(d, whole);
    place.part = hn::Load(d, part);
}

} // namespace HWY_NAMESPACE
} // namespace pixel
HWY_AFTER_NAMESPACE();

#endif
