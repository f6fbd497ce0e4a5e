/// Functions evaluated in double precision, for operations that magnify the rounding of floats.
/// Included once per target, after hwy/highway.h.
#if defined(PIXEL_WIDE_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef PIXEL_WIDE_INL_H_
#undef PIXEL_WIDE_INL_H_
#else
#define PIXEL_WIDE_INL_H_
#endif

#include <limits>

#include <hwy/highway.h>

#include "pixel/colors-inl.h"
#include "pixel/power-inl.h"

HWY_BEFORE_NAMESPACE();
namespace pixel {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

/// Calls `f(tag of doubles, value)` for both halves of a vector of floats, and joins what it returns.
template <class D, class F>
HWY_INLINE hn::Vec<D> map_wide(D d, hn::Vec<D> v, F&& f) {
#if HWY_TARGET == HWY_SCALAR
    const hn::Rebind<double, D> wide;
    return narrow(d, f(wide, hn::PromoteTo(wide, v)));
#else
    const hn::Half<D> half;
    const hn::Rebind<double, hn::Half<D>> wide;
    const auto low = f(wide, hn::PromoteTo(wide, hn::LowerHalf(half, v)));
    const auto high = f(wide, hn::PromoteTo(wide, hn::UpperHalf(half, v)));
    return hn::Combine(d, narrow(half, high), narrow(half, low));
#endif
}

/// Replaces red, green and blue by `f(tag, value)` in double precision.
template <class F>
HWY_INLINE void map_channels(Block& block, F&& f) {
    const hn::ScalableTag<float> d;
    for (std::size_t c = 0; c < 3; ++c) {
        map_plane_slowly(block, c, [&](auto x) HWY_ATTR { return map_wide(d, x, f); });
    }
}

/// Calls `f(tag of doubles, red, green, blue)`, which changes the vectors, for both halves of floats.
template <class D, class F>
HWY_INLINE void change_wide(D d, hn::Vec<D>& r, hn::Vec<D>& g, hn::Vec<D>& b, F&& f) {
#if HWY_TARGET == HWY_SCALAR
    const hn::Rebind<double, D> wide;
    auto rw = hn::PromoteTo(wide, r), gw = hn::PromoteTo(wide, g), bw = hn::PromoteTo(wide, b);
    f(wide, rw, gw, bw);
    r = narrow(d, rw);
    g = narrow(d, gw);
    b = narrow(d, bw);
#else
    const hn::Half<D> half;
    const hn::Rebind<double, hn::Half<D>> wide;
    auto r0 = hn::PromoteTo(wide, hn::LowerHalf(half, r)), r1 = hn::PromoteTo(wide, hn::UpperHalf(half, r));
    auto g0 = hn::PromoteTo(wide, hn::LowerHalf(half, g)), g1 = hn::PromoteTo(wide, hn::UpperHalf(half, g));
    auto b0 = hn::PromoteTo(wide, hn::LowerHalf(half, b)), b1 = hn::PromoteTo(wide, hn::UpperHalf(half, b));
    f(wide, r0, g0, b0);
    f(wide, r1, g1, b1);
    r = hn::Combine(d, narrow(half, r1), narrow(half, r0));
    g = hn::Combine(d, narrow(half, g1), narrow(half, g0));
    b = hn::Combine(d, narrow(half, b1), narrow(half, b0));
#endif
}

/// Base-2 logarithm of any double: -inf of 0, NaN of negative numbers.
template <class DD>
HWY_INLINE hn::Vec<DD> log2_wide(DD dd, hn::Vec<DD> x) {
    const auto infinity = hn::Set(dd, std::numeric_limits<double>::infinity()), zero = hn::Zero(dd);
    const auto ordinary = hn::And(hn::Gt(x, hn::Set(dd, 0x1p-1000)), hn::Lt(x, infinity));
    const auto logarithm = log2_double(dd, hn::IfThenElse(ordinary, x, hn::Set(dd, 1.0)));
    const auto nan = hn::Set(dd, std::numeric_limits<double>::quiet_NaN());
    const auto rest =
        hn::IfThenElse(hn::Lt(x, zero), nan, hn::IfThenElse(hn::IsNaN(x), x, hn::Neg(infinity)));
    return hn::IfThenElse(ordinary, logarithm, hn::IfThenElse(hn::Eq(x, infinity), x, rest));
}

/// 2 ^ x for any double, infinity from 2^1000 on.
template <class DD>
HWY_INLINE hn::Vec<DD> exp2_wide(DD dd, hn::Vec<DD> x) {
    const auto most = hn::Set(dd, 1000.0), infinity = hn::Set(dd, std::numeric_limits<double>::infinity());
    const auto limited = hn::Min(hn::Max(hn::IfThenElse(hn::IsNaN(x), most, x), hn::Neg(most)), most);
    const auto power = hn::IfThenElse(hn::Ge(x, most), infinity, exp2_double(dd, limited));
    return hn::IfThenElse(hn::IsNaN(x), x, power);
}

/// x ^ exponent for doubles in [0, +inf] and NaN, any exponent but 0; NaN of negative numbers. Tiny numbers
/// count as 0.
template <class DD>
HWY_INLINE hn::Vec<DD> power_wide(DD dd, hn::Vec<DD> x, hn::Vec<DD> exponent) {
    const auto infinity = hn::Set(dd, std::numeric_limits<double>::infinity()), zero = hn::Zero(dd);
    const auto ordinary = hn::And(hn::Gt(x, hn::Set(dd, 0x1p-1000)), hn::Lt(x, infinity));
    const auto raise = [&](auto base) HWY_ATTR {
        const auto logarithm = hn::Mul(exponent, log2_double(dd, base));
        return exp2_double(dd, hn::Min(hn::Max(logarithm, hn::Set(dd, -1000.0)), hn::Set(dd, 1000.0)));
    };
    if (hn::AllTrue(dd, ordinary)) {
        return raise(x);
    }
    const auto large = hn::IfThenElse(hn::Gt(exponent, zero), infinity, zero);
    const auto small = hn::IfThenElse(hn::Gt(exponent, zero), zero, infinity);
    const auto nan = hn::Set(dd, std::numeric_limits<double>::quiet_NaN());
    const auto not_positive = hn::IfThenElse(hn::Lt(x, zero), nan, small);
    const auto rest = hn::IfThenElse(hn::Le(x, hn::Set(dd, 0x1p-1000)), not_positive,
                                     hn::IfThenElse(hn::Eq(x, infinity), large, x));
    return hn::IfThenElse(ordinary, raise(hn::IfThenElse(ordinary, x, hn::Set(dd, 1.0))), rest);
}

} // namespace HWY_NAMESPACE
} // namespace pixel
HWY_AFTER_NAMESPACE();

#endif
