#include "pixel/kernels.h"

#include <limits>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "pixel/kernel_log.cpp"
#include "pixel/vector_targets.h"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "pixel/clamp-inl.h"
#include "pixel/planes-inl.h"
#include "pixel/power-inl.h"

HWY_BEFORE_NAMESPACE();
namespace pixel {
namespace HWY_NAMESPACE {

template <class D>
HWY_INLINE hn::Vec<D> times_plus(D d, hn::Vec<D> x, float factor, float term) {
    return hn::Add(hn::Mul(x, hn::Set(d, factor)), hn::Set(d, term));
}

template <class D>
HWY_INLINE hn::Vec<D> minus_times(D d, hn::Vec<D> x, float term, float factor) {
    return hn::Mul(hn::Sub(x, hn::Set(d, term)), hn::Set(d, factor));
}

/// log2 of values raised to the smallest normal float; NaN counts as that too.
template <class D>
HWY_INLINE hn::Vec<D> floored_log2(D d, hn::Vec<D> x) {
    return log2_of(d, at_least(x, hn::Set(d, std::numeric_limits<float>::min())));
}

void log_curve(const LogStage& stage, Block& block) {
    const hn::ScalableTag<float> d;
    for (std::size_t c = 0; c < 3; ++c) {
        const auto& k = stage.channel[c];
        map_plane_slowly(block, c, [&](auto x) HWY_ATTR {
            if (!stage.affine) {
                return hn::Mul(floored_log2(d, x), hn::Set(d, k.log_slope));
            }
            auto out = floored_log2(d, times_plus(d, x, k.lin_slope, k.lin_offset));
            out = times_plus(d, out, k.log_slope, k.log_offset);
            if (stage.has_line) {
                const auto below = hn::Lt(x, hn::Set(d, k.lin_break));
                out = hn::IfThenElse(below, times_plus(d, x, k.line_slope, k.line_offset), out);
            }
            return out;
        });
    }
}

void exp_curve(const ExpStage& stage, Block& block) {
    const hn::ScalableTag<float> d;
    for (std::size_t c = 0; c < 3; ++c) {
        const auto& k = stage.channel[c];
        map_plane_slowly(block, c, [&](auto x) HWY_ATTR {
            if (!stage.affine) {
                return exp2_of(d, hn::Mul(x, hn::Set(d, k.log_slope)));
            }
            auto out = exp2_of(d, minus_times(d, x, k.log_offset, k.log_slope));
            out = minus_times(d, out, k.lin_offset, k.lin_slope);
            if (stage.has_line) {
                const auto below = hn::Lt(x, hn::Set(d, k.log_break));
                out = hn::IfThenElse(below, minus_times(d, x, k.line_offset, k.line_slope), out);
            }
            return out;
        });
    }
}

} // namespace HWY_NAMESPACE
} // namespace pixel
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace pixel {

HWY_EXPORT(log_curve);
HWY_EXPORT(exp_curve);

void run_log(const LogStage& stage, Block& block) {
    HWY_DYNAMIC_DISPATCH(log_curve)(stage, block);
}

void run_exp(const ExpStage& stage, Block& block) {
    HWY_DYNAMIC_DISPATCH(exp_curve)(stage, block);
}

} // namespace pixel
#endif
