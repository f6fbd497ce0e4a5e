#include "pixel/kernels.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "pixel/kernel_exposure.cpp"
#include "pixel/vector_targets.h"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "pixel/clamp-inl.h"
#include "pixel/planes-inl.h"
#include "pixel/power-inl.h"

HWY_BEFORE_NAMESPACE();
namespace pixel {
namespace HWY_NAMESPACE {

/// (in * gain) ^ exponent * scale, where negative values and NaN count as 0.
void exposure(const ExposureStage& stage, Block& block) {
    const hn::ScalableTag<float> d;
    const auto gain = hn::Set(d, stage.gain), scale = hn::Set(d, stage.scale), zero = hn::Zero(d);
    with_power(stage.exponent, [&](const auto& power) HWY_ATTR {
        for (std::size_t c = 0; c < 3; ++c) {
            map_plane_slowly(block, c, [&](auto x) HWY_ATTR {
                return hn::Mul(power_of(d, power, at_least(hn::Mul(x, gain), zero)), scale);
            });
        }
    });
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
