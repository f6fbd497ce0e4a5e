#include "pixel/kernels.h"

#include <type_traits>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "pixel/kernel_power.cpp"
#include "pixel/vector_targets.h"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "pixel/power-inl.h"

HWY_BEFORE_NAMESPACE();
namespace pixel {
namespace HWY_NAMESPACE {

template <class D, class P>
void power_plane(D d, PowerShape shape, const P& power, float* plane, std::size_t count) {
    const auto zero = hn::Zero(d);
    for (std::size_t i = 0; i < count; i += hn::Lanes(d)) {
        const auto x = hn::Load(d, plane + i);
        if (shape == PowerShape::Clamp) {
            hn::Store(power_of(d, power, hn::IfThenElseZero(hn::Gt(x, zero), x)), d, plane + i);
        } else if (shape == PowerShape::Mirror) {
            hn::Store(hn::CopySign(power_of(d, power, hn::Abs(x)), x), d, plane + i);
        } else {
            hn::Store(hn::IfThenElse(hn::Gt(x, zero), power_of(d, power, x), x), d, plane + i);
        }
    }
}

void power_curve(const PowerStage& stage, Block& block) {
    const hn::ScalableTag<float> d;
    for (int c = 0; c < 4; ++c) {
        if (!stage.active[c]) {
            continue;
        }
        with_power(stage.exponent[c], [&](const auto& raise) HWY_ATTR {
            power_plane(d, stage.shape, raise, block.plane[c], block.padded);
        });
    }
}

/// Values that all lie on the linear part, such as an opaque alpha channel, skip the power.
template <bool FORWARD, class D, class P>
void toe_plane(D d, const ToeStage::Channel& c, bool mirror, const P& power, float* plane,
               std::size_t count) {
    const auto scale = hn::Set(d, c.scale), offset = hn::Set(d, c.offset);
    const auto slope = hn::Set(d, c.slope), knee = hn::Set(d, c.knee);
    for (std::size_t i = 0; i < count; i += hn::Lanes(d)) {
        const auto in = hn::Load(d, plane + i);
        const auto x = mirror ? hn::Abs(in) : in;
        auto out = hn::Mul(x, slope);
        const auto curved = hn::Gt(x, knee);
        if (!hn::AllFalse(d, curved)) {
            const auto y = FORWARD ? power_of(d, power, hn::Add(hn::Mul(x, scale), offset))
                                   : hn::Sub(hn::Mul(power_of(d, power, x), scale), offset);
            out = hn::IfThenElse(curved, y, out);
        }
        hn::Store(mirror ? hn::CopySign(out, in) : out, d, plane + i);
    }
}

void toe_curve(const ToeStage& stage, Block& block) {
    const hn::ScalableTag<float> d;
    for (std::size_t c = 0; c < 4; ++c) {
        const ToeStage::Channel& channel = stage.channel[c];
        with_power(channel.exponent, [&](const auto& power) HWY_ATTR {
            const auto run = stage.forward ? toe_plane<true, decltype(d), std::decay_t<decltype(power)>>
                                           : toe_plane<false, decltype(d), std::decay_t<decltype(power)>>;
            run(d, channel, stage.mirror, power, block.plane[c], block.padded);
        });
    }
}

} // namespace HWY_NAMESPACE
} // namespace pixel
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace pixel {

HWY_EXPORT(power_curve);
HWY_EXPORT(toe_curve);

void run_power(const PowerStage& stage, Block& block) {
    HWY_DYNAMIC_DISPATCH(power_curve)(stage, block);
}

void run_toe(const ToeStage& stage, Block& block) {
    HWY_DYNAMIC_DISPATCH(toe_curve)(stage, block);
}

} // namespace pixel
#endif
