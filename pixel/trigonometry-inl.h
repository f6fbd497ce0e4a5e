/// Angles of 32-bit floats, evaluated in double precision: results are the correctly rounded ones except
/// where the exact value lies within 1e-3 of a unit in the last place of a rounding boundary. Included once
/// per target, after hwy/highway.h.
#if defined(PIXEL_TRIGONOMETRY_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef PIXEL_TRIGONOMETRY_INL_H_
#undef PIXEL_TRIGONOMETRY_INL_H_
#else
#define PIXEL_TRIGONOMETRY_INL_H_
#endif

#include <hwy/highway.h>

#include "pixel/wide-inl.h"

HWY_BEFORE_NAMESPACE();
namespace pixel {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

/// c[0] + c[1] x + ...
template <class DD, std::size_t N>
HWY_INLINE hn::Vec<DD> polynomial(DD dd, const double (&c)[N], hn::Vec<DD> x) {
    auto sum = hn::Set(dd, c[N - 1]);
    for (std::size_t i = N - 1; i-- > 0;) {
        sum = hn::MulAdd(sum, x, hn::Set(dd, c[i]));
    }
    return sum;
}

constexpr double TURN_8TH = 0x1.921fb54442d18p-1, TURN_4TH = 0x1.921fb54442d18p+0,
                 TURN_HALF = 0x1.921fb54442d18p+1;

/// The angle of (x, y) for finite numbers, 0 for two zeros. The polynomial is atan(r) / r over r * r,
/// interpolated at the Chebyshev nodes of [-tan(pi / 8), tan(pi / 8)]; its relative error is below 3e-11.
template <class DD>
HWY_INLINE hn::Vec<DD> angle_double(DD dd, hn::Vec<DD> y, hn::Vec<DD> x) {
    constexpr double C[] = {0x1.ffffffffd077ap-1,  -0x1.55555480eb90ap-2, 0x1.9998fda4e8713p-3,
                            -0x1.247ca601837f6p-3, 0x1.c437bab2f950dp-4,  -0x1.5a5c86520cb96p-4,
                            0x1.819ba9e8c1895p-5};
    constexpr double TANGENT = 0x1.a827999fcef32p-2;
    const auto ax = hn::Abs(x), ay = hn::Abs(y);
    const auto large = hn::Max(ax, ay), small = hn::Min(ax, ay);
    // Beyond pi / 8, the angle from pi / 4.
    const auto beyond = hn::Gt(small, hn::Mul(large, hn::Set(dd, TANGENT)));
    const auto over = hn::IfThenElse(beyond, hn::Sub(small, large), small);
    const auto under = hn::IfThenElse(beyond, hn::Add(small, large), large);
    const auto zero = hn::Zero(dd);
    const auto r = hn::Div(over, hn::IfThenElse(hn::Eq(under, zero), hn::Set(dd, 1.0), under));
    auto angle = hn::Mul(r, polynomial(dd, C, hn::Mul(r, r)));
    angle = hn::Add(angle, hn::IfThenElseZero(beyond, hn::Set(dd, TURN_8TH)));
    angle = hn::IfThenElse(hn::Gt(ay, ax), hn::Sub(hn::Set(dd, TURN_4TH), angle), angle);
    angle = hn::IfThenElse(hn::Lt(x, zero), hn::Sub(hn::Set(dd, TURN_HALF), angle), angle);
    return hn::CopySign(angle, y);
}

/// Replaces an angle within 1000 turns by its cosine, and sets its sine. The polynomials are cos(r) and
/// sin(r) / r over r * r, interpolated at the Chebyshev nodes of [-pi / 4, pi / 4]; their relative errors are
/// below 5e-12.
template <class DD>
HWY_INLINE void cosine_and_sine_double(DD dd, hn::Vec<DD>& angle, hn::Vec<DD>& sine) {
    constexpr double S[] = {0x1.fffffffff67afp-1, -0x1.5555554946d41p-3, 0x1.1111074a72dd8p-7,
                            -0x1.a00ee754eb761p-13, 0x1.6cb727dcd8c09p-19};
    constexpr double C[] = {0x1.ffffffffffe0bp-1,   -0x1.ffffffffe3729p-2, 0x1.5555554474891p-5,
                            -0x1.6c16b2d2c80d1p-10, 0x1.a00e95f0d01c7p-16, -0x1.23c5a67c9c1e4p-22};
    const hn::RebindToSigned<DD> di;
    const auto magic = hn::Set(dd, 0x1.8p52); // adding it leaves the count of quarters in the low bits
    const auto shifted = hn::MulAdd(angle, hn::Set(dd, 1 / TURN_4TH), magic);
    const auto quarters = hn::BitCast(di, shifted);
    const auto whole = hn::Sub(shifted, magic);
    auto r = hn::NegMulAdd(whole, hn::Set(dd, TURN_4TH), angle);
    r = hn::NegMulAdd(whole, hn::Set(dd, 0x1.1a62633145c07p-54), r);
    const auto square = hn::Mul(r, r);
    const auto s = hn::Mul(r, polynomial(dd, S, square)), c = polynomial(dd, C, square);
    const auto one = hn::Set(di, 1), two = hn::Set(di, 2);
    const auto odd = hn::MaskFromVec(hn::BitCast(dd, hn::Neg(hn::And(quarters, one))));
    const auto sign_of = [&](auto count)
                             HWY_ATTR { return hn::BitCast(dd, hn::ShiftLeft<62>(hn::And(count, two))); };
    angle = hn::Xor(hn::IfThenElse(odd, s, c), sign_of(hn::Add(quarters, one)));
    sine = hn::Xor(hn::IfThenElse(odd, c, s), sign_of(quarters));
}

} // namespace HWY_NAMESPACE
} // namespace pixel
HWY_AFTER_NAMESPACE();

#endif
