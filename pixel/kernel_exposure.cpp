#include "pixel/kernels.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "pixel/kernel_exposure.cpp"
#include "pixel/vector_targets.h"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "pixel/wide-inl.h"

HWY_BEFORE_NAMESPACE();
namespace pixel {
namespace HWY_NAMESPACE {

/// Large exponents magnify roundings, so everything is in double precision.
void exposure(const ExposureStage& stage, Block& block) {
    const hn::ScalableTag<float> d;
    for (std::size_t c = 0; c < 3; ++c) {
        map_plane_slowly(block, c, [&](auto in) HWY_ATTR {
            return map_wide(d, at_least(in, hn::Zero(d)), [&](auto dd, auto x) HWY_ATTR {
                const auto base = hn::Mul(x, hn::Set(dd, stage.gain));
                return hn::Mul(power_wide(dd, base, hn::Set(dd, stage.exponent)), hn::Set(dd, stage.scale));
            });
        });
    }
}

} // namespace HWY_NAMESPACE
} // namespace pixel
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace pixel {

HWY_EXPORT(exposure);

void run_exposure(const ExposureStage& stage, Block& block) {
    HWY_DYNAMIC_DISPATCH(exposure)(stage, block);
}

} // namespace pixel
#endif
