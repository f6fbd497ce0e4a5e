/// The logarithm that gradings of the linear style work on, and its inverse, in double precision.
/// Included once per target, after hwy/highway.h.
#if defined(PIXEL_LIN_LOG_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef PIXEL_LIN_LOG_INL_H_
#undef PIXEL_LIN_LOG_INL_H_
#else
#define PIXEL_LIN_LOG_INL_H_
#endif

#include <limits>

#include <hwy/highway.h>

#include "pixel/power-inl.h"

HWY_BEFORE_NAMESPACE();
namespace pixel {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

constexpr double LIN_BREAK = 0.0041318374739483946, LOG_BREAK = -5.5, LIN_SHIFT = -0.000157849851665374;
constexpr double LIN_GAIN = 363.034608563, MID_GRAY = 0.18 + LIN_SHIFT;

/// Stops from mid gray, and a line below the break.
template <class DD>
HWY_INLINE hn::Vec<DD> lin_to_log(DD dd, hn::Vec<DD> x) {
    const auto line = hn::MulSub(x, hn::Set(dd, LIN_GAIN), hn::Set(dd, 7.0));
    const auto infinity = hn::Set(dd, std::numeric_limits<double>::infinity());
    const auto curved = hn::And(hn::Ge(x, hn::Set(dd, LIN_BREAK)), hn::Lt(x, infinity));
    const auto ratio = hn::Mul(hn::Add(x, hn::Set(dd, LIN_SHIFT)), hn::Set(dd, 1 / MID_GRAY));
    return hn::IfThenElse(curved, log2_double(dd, hn::IfThenElse(curved, ratio, hn::Set(dd, 1.0))), line);
}

template <class DD>
HWY_INLINE hn::Vec<DD> log_to_lin(DD dd, hn::Vec<DD> y) {
    const auto line = hn::Mul(hn::Add(y, hn::Set(dd, 7.0)), hn::Set(dd, 1 / LIN_GAIN));
    const auto curved = hn::Ge(y, hn::Set(dd, LOG_BREAK));
    const auto stops = hn::IfThenElseZero(curved, hn::Min(y, hn::Set(dd, 1000.0)));
    const auto power = hn::MulAdd(exp2_double(dd, stops), hn::Set(dd, MID_GRAY), hn::Set(dd, -LIN_SHIFT));
    return hn::IfThenElse(curved, power, line);
}

} // namespace HWY_NAMESPACE
} // namespace pixel
HWY_AFTER_NAMESPACE();

#endif
