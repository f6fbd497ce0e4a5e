#include "pixel/kernels.h"

#include <limits>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "pixel/kernel_primary.cpp"
#include "pixel/vector_targets.h"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "pixel/wide-inl.h"

HWY_BEFORE_NAMESPACE();
namespace pixel {
namespace HWY_NAMESPACE {

/// (v * scale + offset): the steps before the power in one.
template <class DD>
HWY_INLINE hn::Vec<DD> affine(DD dd, const PrimaryStage::Line& line, hn::Vec<DD> v) {
    return hn::MulAdd(v, hn::Set(dd, line.scale), hn::Set(dd, line.offset));
}

/// A power of the distance from `from` in units of `width`, the sign of the distance kept.
template <class DD>
HWY_INLINE hn::Vec<DD> signed_power(DD dd, hn::Vec<DD> v, double from, double width, double exponent) {
    const auto distance = hn::Sub(v, hn::Set(dd, from));
    const auto share = hn::Mul(hn::Abs(distance), hn::Set(dd, 1 / width));
    const auto power = power_wide(dd, share, hn::Set(dd, exponent));
    return hn::MulAdd(hn::CopySign(power, distance), hn::Set(dd, width), hn::Set(dd, from));
}

template <class DD>
HWY_INLINE void saturate(DD dd, double amount, hn::Vec<DD>& r, hn::Vec<DD>& g, hn::Vec<DD>& b) {
    const auto luma = weighted_sum(dd, r, g, b, 0.2126, 0.7152, 0.0722);
    const auto factor = hn::Set(dd, amount);
    r = hn::MulAdd(factor, hn::Sub(r, luma), luma);
    g = hn::MulAdd(factor, hn::Sub(g, luma), luma);
    b = hn::MulAdd(factor, hn::Sub(b, luma), luma);
}

/// NaN stays.
template <class DD>
HWY_INLINE hn::Vec<DD> clamp(DD dd, const PrimaryStage& stage, hn::Vec<DD> v) {
    const auto low = hn::Set(dd, stage.low), high = hn::Set(dd, stage.high);
    v = hn::IfThenElse(hn::Lt(v, low), low, v);
    return hn::IfThenElse(hn::Gt(v, high), high, v);
}

template <class DD>
HWY_INLINE hn::Vec<DD> curve(DD dd, const PrimaryStage& stage, std::size_t c, hn::Vec<DD> v) {
    v = affine(dd, stage.before[c], v);
    if (stage.has_power) {
        v = signed_power(dd, v, stage.power_from, stage.power_width, stage.power[c]);
    }
    return affine(dd, stage.after[c], v);
}

void primary(const PrimaryStage& stage, Block& block) {
    map_colors(block, [&](auto d, auto& r, auto& g, auto& b) HWY_ATTR {
        change_wide(d, r, g, b, [&](auto dd, auto& rw, auto& gw, auto& bw) HWY_ATTR {
            if (!stage.forward) {
                rw = clamp(dd, stage, rw);
                gw = clamp(dd, stage, gw);
                bw = clamp(dd, stage, bw);
                if (stage.has_saturation) {
                    saturate(dd, stage.saturation, rw, gw, bw);
                }
            }
            rw = curve(dd, stage, 0, rw);
            gw = curve(dd, stage, 1, gw);
            bw = curve(dd, stage, 2, bw);
            if (stage.forward) {
                if (stage.has_saturation) {
                    saturate(dd, stage.saturation, rw, gw, bw);
                }
                rw = clamp(dd, stage, rw);
                gw = clamp(dd, stage, gw);
                bw = clamp(dd, stage, bw);
            }
        });
    });
}

} // namespace HWY_NAMESPACE
} // namespace pixel
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace pixel {

HWY_EXPORT(primary);

void run_primary(const PrimaryStage& stage, Block& block) {
    HWY_DYNAMIC_DISPATCH(primary)(stage, block);
}

} // namespace pixel
#endif
