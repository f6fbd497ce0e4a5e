/// Vector power of 32-bit floats, evaluated in double precision: results are the
/// correctly rounded ones except where the exact value lies within 1e-9 of a unit in the last place of a
/// rounding boundary. Included once per target, after hwy/highway.h.
#if defined(PIXEL_POWER_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef PIXEL_POWER_INL_H_
#undef PIXEL_POWER_INL_H_
#else
#define PIXEL_POWER_INL_H_
#endif

#include <cstdint>
#include <limits>

#include <hwy/highway.h>

#include "pixel/log_exp-inl.h"

HWY_BEFORE_NAMESPACE();
namespace pixel {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

/// Raises to a fixed exponent in (0, 6]: the logarithms of floats, times it, stay well inside the range of
/// doubles. Only lanes of (0, +inf) hold a result; the power of 0, of +inf and of NaN is the base itself.
struct ModeratePower {
    double exponent;

    template <class D>
    HWY_INLINE hn::Vec<D> raw(D d, hn::Vec<D> x) const {
        const double e = exponent;
        return in_double(
            d,
            [e](auto dd, auto v)
                HWY_ATTR { return exp2_double(dd, hn::Mul(hn::Set(dd, e), log2_double(dd, v))); },
            x);
    }
    template <class D>
    HWY_INLINE hn::Vec<D> rest(D, hn::Vec<D> x) const {
        return x;
    }
};

/// Raises to any fixed exponent but 0.
struct AnyPower {
    double exponent;

    template <class D>
    HWY_INLINE hn::Vec<D> raw(D d, hn::Vec<D> x) const {
        const double e = exponent;
        return in_double(
            d,
            [e](auto dd, auto v) HWY_ATTR {
                return exp2_double(dd, limit_exponent(dd, hn::Mul(hn::Set(dd, e), log2_double(dd, v))));
            },
            x);
    }
    template <class D>
    HWY_INLINE hn::Vec<D> rest(D d, hn::Vec<D> x) const {
        const auto infinity = hn::Set(d, std::numeric_limits<float>::infinity()), zero = hn::Zero(d);
        const auto at_zero = exponent > 0 ? zero : infinity, at_infinity = exponent > 0 ? infinity : zero;
        return hn::IfThenElse(hn::Eq(x, zero), at_zero, hn::IfThenElse(hn::Eq(x, infinity), at_infinity, x));
    }
};

/// The exponent 1: every base is its own power.
struct FirstPower {
    template <class D>
    HWY_INLINE hn::Vec<D> raw(D, hn::Vec<D> x) const {
        return x;
    }
    template <class D>
    HWY_INLINE hn::Vec<D> rest(D, hn::Vec<D> x) const {
        return x;
    }
};

/// The exponent 0: every power is 1, that of NaN included.
struct ZerothPower {
    template <class D>
    HWY_INLINE hn::Vec<D> raw(D d, hn::Vec<D>) const {
        return hn::Set(d, 1.0f);
    }
    template <class D>
    HWY_INLINE hn::Vec<D> rest(D d, hn::Vec<D>) const {
        return hn::Set(d, 1.0f);
    }
};

/// Lanes whose power `raw` gives; `rest` gives that of 0, +inf and NaN.
template <class D>
HWY_INLINE auto is_ordinary(D d, hn::Vec<D> x) {
    return hn::And(hn::Gt(x, hn::Zero(d)), hn::Lt(x, hn::Set(d, std::numeric_limits<float>::infinity())));
}

/// As the C library's powf, for bases in [0, +inf] and NaN.
template <class P, class D>
HWY_INLINE hn::Vec<D> power_of(D d, const P& power, hn::Vec<D> x) {
    return hn::IfThenElse(is_ordinary(d, x), power.raw(d, x), power.rest(d, x));
}

/// Raises each of four lanes to a separate exponent, with the bits that the function which `with_power`
/// chooses for that exponent gives: powers of the exponents 1 and 0 are exact, and limiting an exponent that
/// is moderate changes nothing.
struct LanePowers {
    const float* exponent;

    template <class D>
    HWY_INLINE hn::Vec<D> raw(D d, hn::Vec<D> x) const {
        return in_double(
            d,
            [](auto dd, auto v, auto e)
                HWY_ATTR { return exp2_double(dd, limit_exponent(dd, hn::Mul(e, log2_double(dd, v)))); },
            x, hn::LoadU(d, exponent));
    }
    template <class D>
    HWY_INLINE hn::Vec<D> rest(D d, hn::Vec<D> x) const {
        const auto infinity = hn::Set(d, std::numeric_limits<float>::infinity()), zero = hn::Zero(d);
        const auto e = hn::LoadU(d, exponent);
        const auto positive = hn::Gt(e, zero);
        const auto moderate = hn::And(positive, hn::Le(e, hn::Set(d, 6.0f)));
        const auto at_zero = hn::IfThenElse(moderate, x, hn::IfThenElse(positive, zero, infinity));
        const auto at_infinity = hn::IfThenElse(positive, infinity, zero);
        const auto power =
            hn::IfThenElse(hn::Eq(x, zero), at_zero, hn::IfThenElse(hn::Eq(x, infinity), at_infinity, x));
        return hn::IfThenElse(hn::Eq(e, zero), hn::Set(d, 1.0f), power);
    }
};

/// `power_of` for LanePowers: lanes are hardly ever anything but ordinary.
template <class D>
HWY_INLINE hn::Vec<D> powers_of(D d, const LanePowers& power, hn::Vec<D> x) {
    const auto ordinary = is_ordinary(d, x);
    const auto raised = power.raw(d, x);
    return HWY_LIKELY(hn::AllTrue(d, ordinary)) ? raised : hn::IfThenElse(ordinary, raised, power.rest(d, x));
}

/// Calls `f` with the cheapest function that raises to `exponent`.
template <class F>
HWY_INLINE void with_power(float exponent, F&& f) {
    if (exponent == 1.0f) {
        f(FirstPower());
    } else if (exponent == 0.0f) {
        f(ZerothPower());
    } else if (exponent > 0.0f && exponent <= 6.0f) {
        f(ModeratePower{exponent});
    } else {
        f(AnyPower{exponent});
    }
}

} // namespace HWY_NAMESPACE
} // namespace pixel
HWY_AFTER_NAMESPACE();

#endif
