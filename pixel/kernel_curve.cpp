#include "pixel/kernels.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "pixel/kernel_curve.cpp"
#include "pixel/vector_targets.h"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "pixel/spline_plane-inl.h"

HWY_BEFORE_NAMESPACE();
namespace pixel {
namespace HWY_NAMESPACE {

template <bool FORWARD>
void curves(const CurveStage& stage, Block& block) {
    for (std::size_t c = 0; c < 3; ++c) {
        spline_plane<FORWARD>(stage.curve[FORWARD ? c : 3], block.plane[c], block);
        spline_plane<FORWARD>(stage.curve[FORWARD ? 3 : c], block.plane[c], block);
    }
}

void curve(const CurveStage& stage, Block& block) {
    (stage.forward ? curves<true> : curves<false>)(stage, block);
}

} // namespace HWY_NAMESPACE
} // namespace pixel
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace pixel {

HWY_EXPORT(curve);

void run_curve(const CurveStage& stage, Block& block) {
    HWY_DYNAMIC_DISPATCH(curve)(stage, block);
}

} // namespace pixel
#endif
