#include "pixel/kernels.h"

#include <cstdint>
#include <cstring>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "pixel/kernel_inverse_half.cpp"
#include "pixel/vector_targets.h"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "pixel/inverse-inl.h"

HWY_BEFORE_NAMESPACE();
namespace pixel {
namespace HWY_NAMESPACE {

/// The numbers that the low 15 bits of 16-bit floats stand for. Taken for a 32-bit float they are 2^-112 of
/// it.
template <class D>
HWY_INLINE hn::Vec<D> half_magnitude(D d, hn::Vec<D> bits) {
    const auto shifted = hn::BitCast(d, hn::ShiftLeft<13>(to_index(d, bits)));
    return hn::Mul(shifted, hn::Set(d, 0x1p112f));
}

/// Replaces values by the numbers of one sign whose entries they lie between; `sign` is 1 or -1.
void inverse_side(const InverseCurve& curve, float sign, float* plane, std::size_t count) {
    const hn::ScalableTag<float> d;
    const hn::RebindToSigned<decltype(d)> di;
    alignas(64) std::int32_t bucket[BLOCK_PIXELS];
    for (std::size_t i = 0; i < count; i += hn::Lanes(d)) {
        auto x = hn::Load(d, plane + i);
        hn::Store(find_bucket(d, curve, x), di, bucket + i);
        hn::Store(x, d, plane + i);
    }
    const float* knots = &curve.knots[0].below;
    for (std::size_t i = 0; i < count; i += hn::Lanes(d)) {
        const auto x = hn::Load(d, plane + i);
        auto place = locate_at_knot(d, knots, bucket + i, x);
        if (curve.crowded && !hn::AllFalse(d, place.crowded)) {
            search_lanes(d, curve, x, place);
        }
        // The first entry may be found as the end of the way from a place before it, which has no number.
        const auto low = half_magnitude(d, at_least(place.whole, hn::Zero(d)));
        const auto high = half_magnitude(d, hn::Add(place.whole, hn::Set(d, 1.0f)));
        const auto out = hn::Add(low, hn::Mul(place.part, hn::Sub(high, low)));
        hn::Store(hn::Mul(out, hn::Set(d, sign)), d, plane + i);
    }
}

/// Marks the values that belong to the entries of negative numbers; false when there are none.
bool mark_negative(const InverseHalfCurve& curve, const float* plane, std::size_t count, float* marks) {
    const hn::ScalableTag<float> d;
    bool any = false;
    for (std::size_t i = 0; i < count; i += hn::Lanes(d)) {
        const auto upper = hn::Ge(hn::Load(d, plane + i), hn::Set(d, curve.middle));
        const auto negative = curve.rising ? hn::Not(upper) : upper;
        hn::Store(hn::IfThenElseZero(negative, hn::Set(d, 1.0f)), d, marks + i);
        any = any || !hn::AllFalse(d, negative);
    }
    return any;
}

void inverse_half_plane(const InverseHalfCurve& curve, float* plane, std::size_t count) {
    const hn::ScalableTag<float> d;
    alignas(64) float negative[BLOCK_PIXELS], marks[BLOCK_PIXELS];
    const bool any_negative = mark_negative(curve, plane, count, marks);
    std::memcpy(negative, plane, count * sizeof(float));
    inverse_side(curve.positive, 1.0f, plane, count);
    if (!any_negative) {
        return;
    }
    inverse_side(curve.negative, -1.0f, negative, count);
    for (std::size_t i = 0; i < count; i += hn::Lanes(d)) {
        const auto is_negative = hn::Eq(hn::Load(d, marks + i), hn::Set(d, 1.0f));
        hn::Store(hn::IfThenElse(is_negative, hn::Load(d, negative + i), hn::Load(d, plane + i)), d,
                  plane + i);
    }
}

void inverse_half(const InverseHalfStage& stage, Block& block) {
    for (std::size_t c = 0; c < 3; ++c) {
        inverse_half_plane(stage.curve[static_cast<std::size_t>(stage.curve_of[c])], block.plane[c],
                           block.padded);
    }
}

} // namespace HWY_NAMESPACE
} // namespace pixel
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace pixel {

HWY_EXPORT(inverse_half);

void run_inverse_half(const InverseHalfStage& stage, Block& block) {
    HWY_DYNAMIC_DISPATCH(inverse_half)(stage, block);
}

} // namespace pixel
#endif
