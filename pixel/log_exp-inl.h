/// Vector base-2 logarithm and exponential of 32-bit floats, evaluated in double precision: results are the
/// correctly rounded ones except where the exact value lies within 1e-9 of a unit in the last place of a
/// rounding boundary. Included once per target, after hwy/highway.h.
#if defined(PIXEL_LOG_EXP_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef PIXEL_LOG_EXP_INL_H_
#undef PIXEL_LOG_EXP_INL_H_
#else
#define PIXEL_LOG_EXP_INL_H_
#endif

#include <cstdint>
#include <limits>

#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace pixel {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

/// Floats from doubles, infinity from those that are too large.
template <class DH, class VD>
HWY_INLINE hn::Vec<DH> narrow(DH half, VD v) {
    const auto out = hn::DemoteTo(half, v);
#if HWY_TARGET == HWY_SCALAR || HWY_TARGET == HWY_EMU128 // demotion saturates there
    const hn::DFromV<VD> dd;
    const auto most = hn::Set(dd, 0x1.ffffffp127); // halfway from the largest float to 2^128
    const auto over = hn::IfThenElseZero(hn::Ge(hn::Abs(v), most), hn::CopySign(hn::Set(dd, 1.0), v));
    const auto flag = hn::DemoteTo(half, over);
    const auto infinity = hn::Set(half, std::numeric_limits<float>::infinity());
    return hn::IfThenElse(hn::Eq(flag, hn::Zero(half)), out, hn::CopySign(infinity, flag));
#else
    return out;
#endif
}

/// Calls `f(tag of doubles, lanes of each v)` for all lanes, or where doubles take too much room for the
/// lower and the upper half, and joins the doubles that it returns into floats.
template <class D, class F, class... V>
HWY_INLINE hn::Vec<D> in_double(D d, F&& f, V... v) {
#if HWY_TARGET == HWY_SCALAR
    const hn::Rebind<double, D> wide;
    return narrow(d, f(wide, hn::PromoteTo(wide, v)...));
#else
    if constexpr (hn::MaxLanes(D()) * sizeof(double) <= HWY_MAX_BYTES) {
        const hn::Rebind<double, D> wide;
        return narrow(d, f(wide, hn::PromoteTo(wide, v)...));
    } else {
        const hn::Half<D> half;
        const hn::Rebind<double, hn::Half<D>> wide;
        const auto low = f(wide, hn::PromoteTo(wide, hn::LowerHalf(half, v))...);
        const auto high = f(wide, hn::PromoteTo(wide, hn::UpperHalf(half, v))...);
        return hn::Combine(d, narrow(half, high), narrow(half, low));
    }
#endif
}

/// Centers of 16 intervals that cover [0.703125, 1.40625): every 1/32 below 1, then 1, then every 1/16. Kept
/// as their reciprocals, and minus the base-2 logarithms of those.
alignas(64) constexpr double RECIPROCAL[16] = {
    0x1.642c8590b2164p+0, 0x1.5555555555555p+0,
    0x1.47ae147ae147bp+0, 0x1.3b13b13b13b14p+0,
    0x1.2f684bda12f68p+0, 0x1.2492492492492p+0,
    0x1.1a7b9611a7b96p+0, 0x1.1111111111111p+0,
    0x1.0842108421084p+0, 1.0,
    0x1.e1e1e1e1e1e1ep-1, 0x1.c71c71c71c71cp-1,
    0x1.af286bca1af28p-1, 0x1.999999999999ap-1,
    0x1.8618618618618p-1, 0x1.745d1745d1746p-1,
};
alignas(64) constexpr double LOG2_CENTER[16] = {
    -0x1.e7df5fe538ab3p-2, -0x1.a8ff971810a5dp-2,
    -0x1.6cb0f6865c8ebp-2, -0x1.32bfee370ee6ap-2,
    -0x1.f5fd8a9063e32p-3, -0x1.8a8980abfbd3p-3,
    -0x1.22dadc2ab3496p-3, -0x1.7d60496cfbb4bp-4,
    -0x1.77394c9d958dp-5,  0.0,
    0x1.663f6fac91318p-4,  0x1.5c01a39fbd68bp-3,
    0x1.fbc16b902680dp-3,  0x1.49a784bcd1b8ap-2,
    0x1.91bba891f170ap-2,  0x1.d6753e032ea0ep-2,
};
/// Bits of the double 2^(i/16), less i << 48: adding n << 48 for any n = 16 k + i gives the bits of 2^(n/16).
alignas(64) constexpr std::int64_t SIXTEENTH_POWER[16] = {
    0x3ff0000000000000, 0x3fefb5586cf9890f, 0x3fef72b83c7d517b, 0x3fef387a6e756238,
    0x3fef06fe0a31b715, 0x3feedea64c123422, 0x3feebfdad5362a27, 0x3feeab07dd485429,
    0x3feea09e667f3bcd, 0x3feea11473eb0187, 0x3feeace5422aa0db, 0x3feec49182a3f090,
    0x3feee89f995ad3ad, 0x3fef199bdd85529c, 0x3fef5818dcfba487, 0x3fefa4afa2a490da,
};

/// Entry `index & 15` of a table.
template <class D, class T, class VI>
HWY_INLINE hn::Vec<D> look_up(D d, const T (&table)[16], VI index) {
#if HWY_TARGET <= HWY_AVX3          // Highway 1.0 has no lookup in two registers
    const hn::ScalableTag<T> whole; // Fewer lanes take their entries from as large a table.
    const auto low = hn::Load(whole, table), high = hn::Load(whole, table + 8);
    constexpr bool FULL = hn::MaxLanes(D()) == 8;
    if constexpr (hwy::IsFloat<T>() && FULL) {
        return hn::Vec<D>{_mm512_permutex2var_pd(low.raw, index.raw, high.raw)};
    } else if constexpr (hwy::IsFloat<T>()) {
        const auto wide = _mm512_castsi256_si512(index.raw);
        return hn::Vec<D>{_mm512_castpd512_pd256(_mm512_permutex2var_pd(low.raw, wide, high.raw))};
    } else if constexpr (FULL) {
        return hn::Vec<D>{_mm512_permutex2var_epi64(low.raw, index.raw, high.raw)};
    } else {
        const auto wide = _mm512_castsi256_si512(index.raw);
        return hn::Vec<D>{_mm512_castsi512_si256(_mm512_permutex2var_epi64(low.raw, wide, high.raw))};
    }
#else
    return hn::GatherIndex(d, table, hn::And(index, hn::Set(hn::DFromV<VI>(), 15)));
#endif
}

/// The exponents of positive normal doubles, as doubles.
template <class DD, class VI>
HWY_INLINE hn::Vec<DD> exponent_of(DD dd, VI bits) {
#if HWY_TARGET <= HWY_AVX3
    if constexpr (hn::MaxLanes(DD()) == 8) {
        return hn::Vec<DD>{_mm512_getexp_pd(hn::BitCast(dd, bits).raw)};
    } else {
        return hn::Vec<DD>{_mm256_getexp_pd(hn::BitCast(dd, bits).raw)};
    }
#else
    constexpr std::int64_t TWO_52 = 0x4330000000000000; // the bits of 2^52
    const hn::DFromV<VI> di;
    const auto biased = hn::BitCast(dd, hn::Or(hn::ShiftRight<52>(bits), hn::Set(di, TWO_52)));
    return hn::Sub(biased, hn::Set(dd, 0x1p52 + 1023));
#endif
}

/// Base-2 logarithm of positive, finite, normal doubles; within 2e-11, and exact for powers of two.
/// x = 2^k * m with m in [0.703125, 1.40625). The polynomial is log2(1 + r) / r interpolated at the Chebyshev
/// nodes of [-0.0295, 0.03125].
template <class DD>
HWY_INLINE hn::Vec<DD> log2_double(DD dd, hn::Vec<DD> x) {
    const hn::RebindToSigned<DD> di;
    constexpr std::int64_t START = 0x3FE6800000000000;        // the bits of 0.703125
    constexpr std::int64_t EXPONENT_ONE = 0x3FF0000000000000; // the bits of 1
    constexpr std::int64_t MANTISSA = 0x000FFFFFFFFFFFFF;
    const auto shifted = hn::Add(hn::BitCast(di, x), hn::Set(di, EXPONENT_ONE - START));
    const auto m = hn::BitCast(dd, hn::Add(hn::And(shifted, hn::Set(di, MANTISSA)), hn::Set(di, START)));
    const auto interval = hn::ShiftRight<48>(shifted);
    const auto r = hn::MulSub(m, look_up(dd, RECIPROCAL, interval), hn::Set(dd, 1.0));
    const auto whole = hn::Add(exponent_of(dd, shifted), look_up(dd, LOG2_CENTER, interval));
    const auto square = hn::Mul(r, r);
    const auto p01 = hn::MulAdd(hn::Set(dd, -0x1.71547433e45acp-1), r, hn::Set(dd, 0x1.715476527b078p+0));
    const auto p23 = hn::MulAdd(hn::Set(dd, -0x1.719c9dfb126bdp-2), r, hn::Set(dd, 0x1.ec70cabb60d18p-2));
    const auto p = hn::MulAdd(hn::MulAdd(hn::Set(dd, 0x1.26a1a4fcc9d7ap-2), square, p23), square, p01);
    return hn::MulAdd(p, r, whole);
}

/// 2 to the power t for t in [-1000, 1000]; within 6e-12 of the result, and exact for whole numbers.
/// t = n / 16 + f. The polynomial is (2^f - 1) / f interpolated at the Chebyshev nodes of [-1/32, 1/32].
template <class DD>
HWY_INLINE hn::Vec<DD> exp2_double(DD dd, hn::Vec<DD> t) {
    const hn::RebindToSigned<DD> di;
    const auto magic = hn::Set(dd, 0x1.8p48); // adding it leaves n in the low bits
    const auto shifted = hn::Add(t, magic);
    const auto n = hn::BitCast(di, shifted);
    const auto f = hn::Sub(t, hn::Sub(shifted, magic));
    const auto scale = hn::Add(look_up(di, SIXTEENTH_POWER, n), hn::ShiftLeft<48>(n));
    const auto square = hn::Mul(f, f);
    const auto p01 = hn::MulAdd(hn::Set(dd, 0x1.62e42fee4615fp-1), f, hn::Set(dd, 1.0));
    const auto p23 = hn::MulAdd(hn::Set(dd, 0x1.c6b3488206d07p-5), f, hn::Set(dd, 0x1.ebfbdff78ad41p-3));
    const auto p = hn::MulAdd(hn::MulAdd(hn::Set(dd, 0x1.3b2bfa0553073p-7), square, p23), square, p01);
    return hn::Mul(p, hn::BitCast(dd, scale));
}

/// Keeps exponents where 2^t, as a double, turns into the right float: zero, denormal, normal or infinity.
template <class DD>
HWY_INLINE hn::Vec<DD> limit_exponent(DD dd, hn::Vec<DD> t) {
    return hn::Min(hn::Max(t, hn::Set(dd, -200.0)), hn::Set(dd, 200.0));
}

/// log2 of x, for x in [FLT_MIN, +inf].
template <class D>
HWY_INLINE hn::Vec<D> log2_of(D d, hn::Vec<D> x) {
    const auto result = in_double(
        d, [](auto dd, auto v) HWY_ATTR { return log2_double(dd, v); }, x);
    const auto infinity = hn::Set(d, std::numeric_limits<float>::infinity());
    return hn::IfThenElse(hn::Eq(x, infinity), x, result);
}

/// 2 to the power of any x; NaN gives NaN.
template <class D>
HWY_INLINE hn::Vec<D> exp2_of(D d, hn::Vec<D> x) {
    const auto result = in_double(
        d, [](auto dd, auto v) HWY_ATTR { return exp2_double(dd, limit_exponent(dd, v)); }, x);
    return hn::IfThenElse(hn::IsNaN(x), x, result);
}

} // namespace HWY_NAMESPACE
} // namespace pixel
HWY_AFTER_NAMESPACE();

#endif
