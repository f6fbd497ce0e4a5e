#include "pixel/kernels.h"

#include <limits>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "pixel/kernel_log.cpp"
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
        map_plane_slowly(block, c, [&](auto x) HWY_ATTR {
            if (!stage.affine) {
                return hn::Mul(floored_log2(d, x), hn::Set(d, stage.log_slope[c]));
            }
            auto out = floored_log2(d, times_plus(d, x, stage.lin_slope[c], stage.lin_offset[c]));
            out = times_plus(d, out, stage.log_slope[c], stage.log_offset[c]);
            if (stage.has_line) {
                const auto below = hn::Lt(x, hn::Set(d, stage.lin_break[c]));
                out = hn::IfThenElse(below, times_plus(d, x, stage.line_slope[c], stage.line_offset[c]), out);
            }
            return out;
        });
    }
}

void exp_curve(const ExpStage& stage, Block& block) {
    const hn::ScalableTag<float> d;
    for (std::size_t c = 0; c < 3; ++c) {
        map_plane_slowly(block, c, [&](auto x) HWY_ATTR {
            if (!stage.affine) {
                return exp2_of(d, hn::Mul(x, hn::Set(d, stage.log_slope[c])));
            }
            auto out = exp2_of(d, minus_times(d, x, stage.log_offset[c], stage.log_slope[c]));
            out = minus_times(d, out, stage.lin_offset[c], stage.lin_slope[c]);
            if (stage.has_line) {
                const auto below = hn::Lt(x, hn::Set(d, stage.log_break[c]));
                out =
                    hn::IfThenElse(below, minus_times(d, x, stage.line_offset[c], stage.line_slope[c]), out);
            }
            return out;
        });
    }
}

#if HWY_TARGET != HWY_SCALAR

HWY_INLINE PixelVec log_curve_alone(const LogStage& stage, PixelVec in) {
    const PixelTag d;
    const auto log_slope = load_lanes(stage.log_slope);
    if (!stage.affine) {
        return keep_alpha(in, hn::Mul(floored_log2(d, in), log_slope));
    }
    const auto argument = hn::Add(hn::Mul(in, load_lanes(stage.lin_slope)), load_lanes(stage.lin_offset));
    auto out = hn::Add(hn::Mul(floored_log2(d, argument), log_slope), load_lanes(stage.log_offset));
    if (stage.has_line) {
        const auto line = hn::Add(hn::Mul(in, load_lanes(stage.line_slope)), load_lanes(stage.line_offset));
        out = hn::IfThenElse(hn::Lt(in, load_lanes(stage.lin_break)), line, out);
    }
    return keep_alpha(in, out);
}

HWY_INLINE PixelVec exp_curve_alone(const ExpStage& stage, PixelVec in) {
    const PixelTag d;
    const auto log_slope = load_lanes(stage.log_slope);
    if (!stage.affine) {
        return keep_alpha(in, exp2_of(d, hn::Mul(in, log_slope)));
    }
    auto out = exp2_of(d, hn::Mul(hn::Sub(in, load_lanes(stage.log_offset)), log_slope));
    out = hn::Mul(hn::Sub(out, load_lanes(stage.lin_offset)), load_lanes(stage.lin_slope));
    if (stage.has_line) {
        const auto line = hn::Mul(hn::Sub(in, load_lanes(stage.line_offset)), load_lanes(stage.line_slope));
        out = hn::IfThenElse(hn::Lt(in, load_lanes(stage.log_break)), line, out);
    }
    return keep_alpha(in, out);
}

#endif

PIXEL_KERNEL(LogStage, log_curve, log_curve_alone)
PIXEL_KERNEL(ExpStage, exp_curve, exp_curve_alone)

} // namespace HWY_NAMESPACE
} // namespace pixel
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace pixel {

HWY_EXPORT(log_curve);
HWY_EXPORT(log_curve_pixel);
HWY_EXPORT(exp_curve);
HWY_EXPORT(exp_curve_pixel);

void run_log(const LogStage& stage, Block& block) {
    HWY_DYNAMIC_DISPATCH(log_curve)(stage, block);
}

void run_exp(const ExpStage& stage, Block& block) {
    HWY_DYNAMIC_DISPATCH(exp_curve)(stage, block);
}

PixelKernel pixel_kernel(const LogStage&) {
    return HWY_DYNAMIC_DISPATCH(log_curve_pixel);
}

PixelKernel pixel_kernel(const ExpStage&) {
    return HWY_DYNAMIC_DISPATCH(exp_curve_pixel);
}

} // namespace pixel
#endif
