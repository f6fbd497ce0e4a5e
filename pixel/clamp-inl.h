/// Clamps with defined results for NaN.
/// Included once per target, after hwy/highway.h.
#if defined(PIXEL_CLAMP_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef PIXEL_CLAMP_INL_H_
#undef PIXEL_CLAMP_INL_H_
#else
#define PIXEL_CLAMP_INL_H_
#endif

#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace pixel {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

// The x86 instructions for minimum and maximum return their second operand unless the first one is strictly
// less or greater, which is what is wanted here; elsewhere NaN and the zeros are treated otherwise.
#define PIXEL_MINMAX_IS_COMPARE (HWY_ARCH_X86 && HWY_TARGET != HWY_EMU128 && HWY_TARGET != HWY_SCALAR)

/// x where it is above `low`, else `low`; NaN gives `low`.
template <class V>
HWY_INLINE V at_least(V x, V low) {
#if PIXEL_MINMAX_IS_COMPARE
    return hn::Max(x, low);
#else
    return hn::IfThenElse(hn::Gt(x, low), x, low);
#endif
}

/// x where it is below `high`, else `high`; NaN gives `high`.
template <class V>
HWY_INLINE V at_most(V x, V high) {
#if PIXEL_MINMAX_IS_COMPARE
    return hn::Min(x, high);
#else
    return hn::IfThenElse(hn::Lt(x, high), x, high);
#endif
}

#undef PIXEL_MINMAX_IS_COMPARE

} // namespace HWY_NAMESPACE
} // namespace pixel
HWY_AFTER_NAMESPACE();

#endif
