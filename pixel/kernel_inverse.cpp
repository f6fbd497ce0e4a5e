#include "pixel/kernels.h"

#include <cstdint>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "pixel/kernel_inverse.cpp"
#include "pixel/vector_targets.h"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "pixel/inverse-inl.h"

HWY_BEFORE_NAMESPACE();
namespace pixel {
namespace HWY_NAMESPACE {

void inverse_plane(const InverseCurve& curve, float reciprocal, float* plane, std::size_t count) {
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
        if (HWY_UNLIKELY(!hn::AllFalse(d, place.crowded))) {
            search_lanes(d, curve, x, place);
        }
        hn::Store(hn::Mul(hn::Add(place.whole, place.part), hn::Set(d, reciprocal)), d, plane + i);
    }
}

void inverse_table(const InverseTableStage& stage, Block& block) {
    for (std::size_t c = 0; c < 3; ++c) {
        const auto& curve = stage.curve[static_cast<std::size_t>(stage.curve_of[c])];
        inverse_plane(curve, stage.reciprocal, block.plane[c], block.padded);
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
