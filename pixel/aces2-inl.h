/// The ACES 2.0 functions for vectors of colors. Every step is rounded, and the steps are in the order of the
/// reference renderer: where they cancel, the roundings are visible.
/// Included once per target, after hwy/highway.h.
#if defined(PIXEL_ACES2_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef PIXEL_ACES2_INL_H_
#undef PIXEL_ACES2_INL_H_
#else
#define PIXEL_ACES2_INL_H_
#endif

#include <limits>

#include <hwy/highway.h>

#include "pixel/aces2.h"
#include "pixel/trigonometry-inl.h"

HWY_BEFORE_NAMESPACE();
namespace pixel {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

constexpr float PI_FLOAT = 3.14159265358979f;

template <class D>
HWY_INLINE void multiply(D d, const Matrix3& m, hn::Vec<D>& x, hn::Vec<D>& y, hn::Vec<D>& z) {
    const auto a = weighted_sum(d, x, y, z, m[0], m[1], m[2]);
    const auto b = weighted_sum(d, x, y, z, m[3], m[4], m[5]);
    z = weighted_sum(d, x, y, z, m[6], m[7], m[8]);
    x = a;
    y = b;
}

// Between the steps of the functions below there are powers, which the caller computes: `power` and `root`
// are results of those. They are separate passes over blocks, because they are long.

/// Cone responses that are not negative, before their compression, up to the power.
template <class D>
HWY_INLINE hn::Vec<D> uncompressed(D d, hn::Vec<D> v) {
    const auto response = smaller(v, hn::Set(d, 0.99f));
    return (hn::Set(d, CONE_OFFSET) * response) / (hn::Set(d, 1.0f) - response);
}

/// The degrees of the two opponent colors, from 0 to 360.
template <class D>
HWY_INLINE hn::Vec<D> hue_of(D d, hn::Vec<D> a, hn::Vec<D> b) {
    auto angle = b;
    angle = in_double(
        d, [](auto dd, auto y, auto x) HWY_ATTR { return angle_double(dd, y, x); }, b, a);
    const auto hue = hn::Set(d, 180.0f) * angle / hn::Set(d, PI_FLOAT);
    return hn::IfThenElse(hn::Lt(hue, hn::Zero(d)), hue + hn::Set(d, 360.0f), hue);
}

template <class D>
HWY_INLINE void cosine_and_sine(D d, hn::Vec<D> degrees, hn::Vec<D>& cosine, hn::Vec<D>& sine) {
    auto unused = degrees;
    cosine = hn::Set(d, PI_FLOAT) * degrees / hn::Set(d, 180.0f);
    change_wide(d, cosine, sine, unused,
                [](auto dd, auto& x, auto& y, auto&) HWY_ATTR { cosine_and_sine_double(dd, x, y); });
}

/// The tone curve, from the luminance of a scene in nit to what is raised to 1.15, and from there to the
/// luminance of a display.
template <class D>
HWY_INLINE hn::Vec<D> tone_base(D d, const ToneCurve& tone, hn::Vec<D> luminance) {
    return luminance / (luminance + hn::Set(d, tone.shift));
}

template <class D>
HWY_INLINE hn::Vec<D> tone_mapped(D d, const ToneCurve& tone, hn::Vec<D> power) {
    const auto f = hn::Set(d, tone.gain) * power;
    const auto flared = f * f / (f + hn::Set(d, 0.04f));
    return larger(hn::Zero(d), flared) * hn::Set(d, 100.0f);
}

/// The inverse, in two steps too.
template <class D>
HWY_INLINE hn::Vec<D> tone_inverse_base(D d, const ToneCurve& tone, hn::Vec<D> luminance) {
    const auto relative = luminance / hn::Set(d, 100.0f);
    const auto z = larger(hn::Zero(d), smaller(hn::Set(d, tone.inverse_limit), relative));
    const auto f = (z + hn::Sqrt(z * (hn::Set(d, 4.0f * 0.04f) + z))) / hn::Set(d, 2.0f);
    // Emulated vectors divide by 0 in another way.
    const auto infinity = hn::Set(d, std::numeric_limits<float>::infinity());
    return hn::IfThenElse(hn::Eq(f, hn::Zero(d)), infinity, hn::Set(d, tone.gain) / f);
}

template <class D>
HWY_INLINE hn::Vec<D> tone_unmapped(D d, const ToneCurve& tone, hn::Vec<D> root) {
    return hn::Set(d, tone.shift) / (root - hn::Set(d, 1.0f));
}

/// The M by which that of a hue is measured.
template <class D>
HWY_INLINE hn::Vec<D> chroma_norm(D d, const Aces2& aces, hn::Vec<D> c, hn::Vec<D> s) {
    const auto set = [&](float v) HWY_ATTR { return hn::Set(d, v); };
    const auto c2 = set(2.0f) * c * c - set(1.0f), s2 = set(2.0f) * c * s;
    const auto c3 = set(4.0f) * c * c * c - set(3.0f) * c, s3 = set(3.0f) * s - set(4.0f) * s * s * s;
    const auto sum = set(11.34072f) * c + set(16.46899f) * c2 + set(7.88380f) * c3 + set(14.66441f) * s +
                     set(-6.37224f) * s2 + set(9.19364f) * s3 + set(77.12896f);
    return set(aces.factors.chroma_scale) * sum;
}

template <bool FORWARD, class D>
HWY_INLINE hn::Vec<D> toe(D d, hn::Vec<D> x, hn::Vec<D> limit, hn::Vec<D> k1_start, hn::Vec<D> k2_start) {
    const auto k2 = larger(k2_start, hn::Set(d, 0.001f));
    const auto k1 = hn::Sqrt(k1_start * k1_start + k2 * k2);
    const auto k3 = (limit + k1) / (limit + k2);
    auto bent = x;
    if (FORWARD) {
        const auto p = k3 * x - k1;
        bent = hn::Set(d, 0.5f) * (p + hn::Sqrt(p * p + hn::Set(d, 4.0f) * (k2 * k3 * x)));
    } else {
        bent = (x * x + k1 * x) / (k3 * (x + k2));
    }
    return hn::IfThenElse(hn::Gt(x, limit), x, bent);
}

/// What the compression of chroma takes from a pixel besides M: J after the tone curve relative to the
/// peak's, the reach of AP1 and the norm at the hue, and the roots of the relative J and of the ratio of J
/// after the curve to that before.
template <class D>
struct ChromaSite {
    hn::Vec<D> relative, reach, norm, relative_root, ratio_root;
};

template <bool FORWARD, class D>
HWY_INLINE hn::Vec<D> chroma_compressed(D d, const Aces2& aces, const ChromaSite<D>& site, hn::Vec<D> m) {
    const auto set = [&](float v) HWY_ATTR { return hn::Set(d, v); };
    const CompressionFactors& factors = aces.factors;
    const auto rest = larger(hn::Zero(d), set(1.0f) - site.relative);
    const auto limit = site.relative_root * site.reach / site.norm;
    const auto inner = limit - set(0.001f), low = rest * set(factors.saturation),
               low_width = hn::Sqrt(site.relative * site.relative + set(factors.saturation_min)),
               high = site.relative * set(factors.compression);
    auto out = m;
    if (FORWARD) {
        out = m * site.ratio_root / site.norm;
        out = limit - toe<true>(d, limit - out, inner, low, low_width);
        out = toe<true>(d, out, limit, high, rest) * site.norm;
    } else {
        out = toe<false>(d, m / site.norm, limit, high, rest);
        out = limit - toe<false>(d, limit - out, inner, low, low_width);
        out = out * site.norm * site.ratio_root;
    }
    return hn::IfThenElse(hn::Eq(m, hn::Zero(d)), m, out);
}

/// (difference * t + value)
template <class D>
HWY_INLINE hn::Vec<D> interpolated(hn::Vec<D> value, hn::Vec<D> difference, hn::Vec<D> t) {
    return difference * t + value;
}

/// J towards which colors are compressed.
template <class D>
HWY_INLINE hn::Vec<D> focus_j(D d, const CompressionFactors& factors, hn::Vec<D> cusp_j) {
    const auto blend = smaller(hn::Set(d, 1.0f), hn::Set(d, 1.3f) - cusp_j / hn::Set(d, factors.max_j));
    return (hn::Set(d, factors.mid_j) - cusp_j) * blend + cusp_j;
}

/// J above which the lines of compression become steeper.
template <class D>
HWY_INLINE hn::Vec<D> gain_threshold(D d, const CompressionFactors& factors, hn::Vec<D> cusp_j) {
    return (hn::Set(d, factors.max_j) - cusp_j) * hn::Set(d, 0.3f) + cusp_j;
}

constexpr double LOG10_2 = 0x1.34413509f79ffp-2;

/// The width of the lines of compression at a J.
template <class D>
HWY_INLINE hn::Vec<D> focus_gain(D d, const CompressionFactors& factors, hn::Vec<D> threshold, hn::Vec<D> j) {
    const auto gain = hn::Set(d, factors.focus_gain);
    const auto above = hn::Gt(j, threshold);
    if (hn::AllFalse(d, above)) {
        return gain;
    }
    const auto max_j = hn::Set(d, factors.max_j);
    const auto ratio = (max_j - threshold) / larger(hn::Set(d, 0.0001f), max_j - j);
    const auto decades = in_double(
        d, [](auto dd, auto v) HWY_ATTR { return hn::Mul(log2_double(dd, v), hn::Set(dd, LOG10_2)); }, ratio);
    return hn::IfThenElse(above, gain * (hn::Set(d, 1.0f) + decades * decades), gain);
}

/// J where the line of compression through a color meets the axis.
template <class D>
HWY_INLINE hn::Vec<D> axis_j(D d, float max_j, hn::Vec<D> focus, hn::Vec<D> gain, hn::Vec<D> j,
                             hn::Vec<D> m) {
    const auto one = hn::Set(d, 1.0f), peak = hn::Set(d, max_j);
    const auto scaled = m / gain, a = scaled / focus;
    const auto below = hn::Lt(j, focus);
    const auto b = hn::IfThenElse(below, one - scaled, hn::Neg(one + scaled + peak * a));
    const auto c = hn::IfThenElse(below, hn::Neg(j), peak * scaled + j);
    const auto root = hn::Sqrt(b * b - hn::Set(d, 4.0f) * a * c);
    return hn::Set(d, -2.0f) * c / (b + hn::IfThenElse(below, root, hn::Neg(root)));
}

/// M where a line of compression meets a boundary that bends with a power; `bent` is reference * (axis /
/// reference) ^ exponent.
template <class V>
HWY_INLINE V meeting_m(V bent, V slope, V max_j, V max_m) {
    return bent * max_m / (max_j - slope * max_m);
}

/// The smaller of M on both parts of the boundary, rounded where they meet.
template <class D>
HWY_INLINE hn::Vec<D> smooth_smaller(D d, hn::Vec<D> lower, hn::Vec<D> upper, hn::Vec<D> cusp_m) {
    const auto width = hn::Set(d, 0.12f) * cusp_m;
    const auto e = larger(width - hn::Abs(lower - upper), hn::Zero(d)) / width;
    return smaller(lower, upper) - e * e * e * width * hn::Set(d, 1.0f / 6.0f);
}

/// M moved towards or away from the boundary, where it is beyond a part of that; `reach` is that of AP1.
template <bool FORWARD, class D>
HWY_INLINE hn::Vec<D> remapped(D d, hn::Vec<D> m, hn::Vec<D> boundary, hn::Vec<D> reach) {
    const auto one = hn::Set(d, 1.0f);
    const auto proportion = larger(boundary / reach, hn::Set(d, 0.75f));
    const auto threshold = proportion * boundary;
    const auto range = reach - threshold;
    const auto scale = range / (range / (boundary - threshold) - one);
    const auto x = (m - threshold) / scale;
    auto out = m;
    if (FORWARD) {
        out = threshold + scale * x / (one + x);
    } else {
        const auto expanded = hn::Neg(x / (x - one));
        out = threshold + scale * hn::IfThenElse(hn::Ge(x, one), one, expanded);
    }
    return hn::IfThenElse(hn::Or(hn::Le(m, threshold), hn::Ge(proportion, one)), m, out);
}

/// The slope of the line of compression from `axis`.
template <class D>
HWY_INLINE hn::Vec<D> line_slope(D d, float max_j, hn::Vec<D> focus, hn::Vec<D> gain, hn::Vec<D> axis) {
    const auto from_end = hn::IfThenElse(hn::Lt(axis, focus), axis, hn::Set(d, max_j) - axis);
    return from_end * (axis - focus) / (focus * gain);
}

} // namespace HWY_NAMESPACE
} // namespace pixel
HWY_AFTER_NAMESPACE();

#endif
