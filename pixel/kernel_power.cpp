#include "pixel/kernels.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "pixel/kernel_power.cpp"
#include "pixel/vector_targets.h"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "pixel/clamp-inl.h"
#include "pixel/pixel-inl.h"
#include "pixel/planes-inl.h"
#include "pixel/power-inl.h"

HWY_BEFORE_NAMESPACE();
namespace pixel {
namespace HWY_NAMESPACE {

template <class P>
void power_plane(const PowerStage& stage, std::size_t c, const P& power, Block& block) {
    const hn::ScalableTag<float> d;
    const auto zero = hn::Zero(d);
    const auto scale = hn::Set(d, stage.before.scale[c]), offset = hn::Set(d, stage.before.offset[c]);
    map_plane_slowly(block, c, [&](auto in) HWY_ATTR {
        const auto x = hn::Add(hn::Mul(in, scale), offset);
        if (stage.shape == PowerShape::Clamp) {
            return power_of(d, power, at_least(x, zero));
        }
        if (stage.shape == PowerShape::Mirror) {
            return hn::CopySign(power_of(d, power, hn::Abs(x)), x);
        }
        return hn::IfThenElse(hn::Gt(x, zero), power_of(d, power, x), x);
    });
}

void power_curve(const PowerStage& stage, Block& block) {
    for (std::size_t c = 0; c < 4; ++c) {
        if (stage.active[c]) {
            with_power(stage.exponent[c],
                       [&](const auto& power) HWY_ATTR { power_plane(stage, c, power, block); });
        }
    }
}

/// Values that all lie on the linear part, such as an opaque alpha channel, skip the power.
template <bool FORWARD, class P>
void toe_plane(const ToeStage& stage, std::size_t c, const P& power, Block& block) {
    const hn::ScalableTag<float> d;
    const auto scale = hn::Set(d, stage.scale[c]), offset = hn::Set(d, stage.offset[c]);
    const auto slope = hn::Set(d, stage.slope[c]), knee = hn::Set(d, stage.knee[c]);
    map_plane_slowly(block, c, [&](auto in) HWY_ATTR {
        const auto x = stage.mirror ? hn::Abs(in) : in;
        auto out = hn::Mul(x, slope);
        const auto curved = hn::Gt(x, knee);
        if (!hn::AllFalse(d, curved)) {
            const auto y = FORWARD ? power_of(d, power, hn::Add(hn::Mul(x, scale), offset))
                                   : hn::Sub(hn::Mul(power_of(d, power, x), scale), offset);
            out = hn::IfThenElse(curved, y, out);
        }
        return stage.mirror ? hn::CopySign(out, in) : out;
    });
}

void toe_curve(const ToeStage& stage, Block& block) {
    for (std::size_t c = 0; c < 4; ++c) {
        with_power(stage.exponent[c], [&](const auto& power) HWY_ATTR {
            if (stage.forward) {
                toe_plane<true>(stage, c, power, block);
            } else {
                toe_plane<false>(stage, c, power, block);
            }
        });
    }
}

#if HWY_TARGET != HWY_SCALAR

HWY_INLINE PixelVec power_curve_alone(const PowerStage& stage, PixelVec in) {
    const PixelTag d;
    const auto zero = hn::Zero(d);
    const LanePowers power{stage.exponent};
    const auto x = hn::Add(hn::Mul(in, load_lanes(stage.before.scale)), load_lanes(stage.before.offset));
    auto out = x;
    if (stage.shape == PowerShape::Clamp) {
        out = powers_of(d, power, at_least(x, zero));
    } else if (stage.shape == PowerShape::Mirror) {
        out = hn::CopySign(powers_of(d, power, hn::Abs(x)), x);
    } else {
        out = hn::IfThenElse(hn::Gt(x, zero), powers_of(d, power, x), x);
    }
    return choose_lanes(stage.active.lane, out, in);
}

HWY_INLINE PixelVec toe_curve_alone(const ToeStage& stage, PixelVec in) {
    const PixelTag d;
    const LanePowers power{stage.exponent};
    const auto scale = load_lanes(stage.scale), offset = load_lanes(stage.offset);
    const auto x = stage.mirror ? hn::Abs(in) : in;
    auto out = hn::Mul(x, load_lanes(stage.slope));
    const auto curved = hn::Gt(x, load_lanes(stage.knee));
    if (!hn::AllFalse(d, curved)) {
        const auto y = stage.forward ? powers_of(d, power, hn::Add(hn::Mul(x, scale), offset))
                                     : hn::Sub(hn::Mul(powers_of(d, power, x), scale), offset);
        out = hn::IfThenElse(curved, y, out);
    }
    return stage.mirror ? hn::CopySign(out, in) : out;
}

#endif

PIXEL_KERNEL(PowerStage, power_curve, power_curve_alone)
PIXEL_KERNEL(ToeStage, toe_curve, toe_curve_alone)

} // namespace HWY_NAMESPACE
} // namespace pixel
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace pixel {

HWY_EXPORT(power_curve);
HWY_EXPORT(power_curve_pixel);
HWY_EXPORT(toe_curve);
HWY_EXPORT(toe_curve_pixel);

void run_power(const PowerStage& stage, Block& block) {
    HWY_DYNAMIC_DISPATCH(power_curve)(stage, block);
}

void run_toe(const ToeStage& stage, Block& block) {
    HWY_DYNAMIC_DISPATCH(toe_curve)(stage, block);
}

PixelKernel pixel_kernel(const PowerStage&) {
    return HWY_DYNAMIC_DISPATCH(power_curve_pixel);
}

PixelKernel pixel_kernel(const ToeStage&) {
    return HWY_DYNAMIC_DISPATCH(toe_curve_pixel);
}

} // namespace pixel
#endif
