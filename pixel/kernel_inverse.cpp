#include "pixel/kernels.h"

#include <cstdint>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "pixel/kernel_inverse.cpp"
#include "pixel/vector_targets.h"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "pixel/inverse-inl.h"
#include "pixel/planes-inl.h"

HWY_BEFORE_NAMESPACE();
namespace pixel {
namespace HWY_NAMESPACE {

void inverse_plane(const InverseTableStage& stage, std::size_t c, Block& block) {
    const hn::ScalableTag<float> d;
    const hn::RebindToSigned<decltype(d)> di;
    alignas(64) std::int32_t bucket[BLOCK_PIXELS];
    float* const plane = block.plane[c];
    const auto& curve = stage.curve[static_cast<std::size_t>(stage.curve_of[c])];
    for_each_vector(block, [&](std::size_t i) HWY_ATTR {
        auto x = hn::Load(d, plane + i);
        hn::Store(find_bucket(d, curve, x), di, bucket + i);
        hn::Store(x, d, plane + i);
    });
    const float* const knots = &curve.knots[0].below;
    const auto reciprocal = hn::Set(d, stage.reciprocal);
    const auto scale = hn::Set(d, stage.after.scale[c]), offset = hn::Set(d, stage.after.offset[c]);
    for_each_vector_and_line(block, [&](std::size_t i) HWY_ATTR {
        const auto x = hn::Load(d, plane + i);
        auto place = locate_at_knot(d, knots, bucket + i, x);
        if (curve.crowded && !hn::AllFalse(d, place.crowded)) {
            search_lanes(d, curve, x, place);
        }
        const auto out = hn::Mul(hn::Add(place.whole, place.part), reciprocal);
        hn::Store(hn::Add(hn::Mul(out, scale), offset), d, plane + i);
    });
}

void inverse_table(const InverseTableStage& stage, Block& block) {
    for (std::size_t c = 0; c < 3; ++c) {
        inverse_plane(stage, c, block);
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
