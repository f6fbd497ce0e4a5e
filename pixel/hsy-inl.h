/// Hue, saturation and luma, as the hue curves of OpenColorIO 2.5 use them. The hue is 0 at magenta.
/// Included once per target, after hwy/highway.h.
#if defined(PIXEL_HSY_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef PIXEL_HSY_INL_H_
#undef PIXEL_HSY_INL_H_
#else
#define PIXEL_HSY_INL_H_
#endif

#include <hwy/highway.h>

#include "pixel/colors-inl.h"
#include "pixel/ops.h"

HWY_BEFORE_NAMESPACE();
namespace pixel {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

template <class D>
HWY_INLINE hn::Vec<D> luma_of(D d, hn::Vec<D> r, hn::Vec<D> g, hn::Vec<D> b) {
    return weighted_sum(d, r, g, b, 0.2126f, 0.7152f, 0.0722f);
}

/// The sum of the distances of the channels from luma.
template <class V>
HWY_INLINE V spread_of(V r, V g, V b, V luma) {
    return hn::Abs(r - luma) + hn::Abs(g - luma) + hn::Abs(b - luma);
}

/// Clamped to 0 and 1; NaN stays.
template <class D>
HWY_INLINE hn::Vec<D> unit_clamped(D d, hn::Vec<D> v) {
    return smaller(larger(v, hn::Zero(d)), hn::Set(d, 1.0f));
}

/// How much of the saturation is that of lights: 0 in the dark, 1 from luma 0.01 on.
template <class D>
HWY_INLINE hn::Vec<D> light_part(D d, hn::Vec<D> luma) {
    return unit_clamped(d, (luma - hn::Set(d, 0.001f)) / hn::Set(d, 0.009f));
}

template <class D>
HWY_INLINE hn::Vec<D> hue_of_rgb(D d, hn::Vec<D> r, hn::Vec<D> g, hn::Vec<D> b) {
    const auto set = [&](float v) HWY_ATTR { return hn::Set(d, v); };
    const auto most = larger(r, larger(g, b)), range = most - smaller(r, smaller(g, b));
    const auto red = set(1.0f) + (g - b) / range, green = set(3.0f) + (b - r) / range,
               blue = set(5.0f) + (r - g) / range;
    const auto sixths = hn::IfThenElse(hn::Eq(r, most), red, hn::IfThenElse(hn::Eq(g, most), green, blue));
    return hn::IfThenZeroElse(hn::Eq(range, hn::Zero(d)), sixths * set(1.0f / 6.0f));
}

template <GradingStyle STYLE, class D>
HWY_INLINE void rgb_to_hsy(D d, hn::Vec<D>& r, hn::Vec<D>& g, hn::Vec<D>& b) {
    const auto set = [&](float v) HWY_ATTR { return hn::Set(d, v); };
    const auto luma = luma_of(d, r, g, b), spread = spread_of(r, g, b, luma), hue = hue_of_rgb(d, r, g, b);
    auto saturation = spread * set(STYLE == GradingStyle::Log ? 4.0f : 1.25f);
    if (STYLE == GradingStyle::Linear) {
        const auto sum = r + g + b;
        const auto light = spread / larger(set(0.07f) * spread + set(1e-6f), set(0.15f) + sum);
        const auto dark = set(5.0f) * spread;
        saturation = set(1.4f) * (dark + light_part(d, luma) * (light - dark));
    }
    r = hue;
    g = saturation;
    b = luma;
}

/// The part of a spread that gives a saturation in the linear style.
template <class D>
HWY_INLINE hn::Vec<D> linear_gain(D d, hn::Vec<D> saturation, hn::Vec<D> luma, hn::Vec<D> sum,
                                  hn::Vec<D> spread) {
    const auto set = [&](float v) HWY_ATTR { return hn::Set(d, v); };
    const auto s = saturation / set(1.4f), part = light_part(d, luma);
    const auto three = set(3.0f) * luma, base = set(0.15f) + three;
    const auto light = smaller(set(50.0f), s * base / larger(set(1e-6f), spread - s * sum + s * three));
    const auto dark = s / larger(set(1e-10f), set(5.0f) * spread);
    const auto weight = set(5.0f) * spread * (set(1.0f) - part);
    const auto a = weight * (sum - three);
    const auto b = weight * base + spread * part - s * (sum - three);
    const auto c = hn::Neg(s * base);
    const auto root = hn::Sqrt(b * b - set(4.0f) * a * c);
    const auto first = set(2.0f) * c / (hn::Neg(root) - b), second = set(2.0f) * c / (root - b);
    const auto mixed = hn::IfThenElse(hn::Ge(first, hn::Zero(d)), first, second);
    return hn::IfThenElse(hn::Eq(part, set(1.0f)), light,
                          hn::IfThenElse(hn::Eq(part, hn::Zero(d)), dark, mixed));
}

template <GradingStyle STYLE, class D>
HWY_INLINE void hsy_to_rgb(D d, hn::Vec<D>& h, hn::Vec<D>& s, hn::Vec<D>& y) {
    const auto set = [&](float v) HWY_ATTR { return hn::Set(d, v); };
    const auto luma = y, zero = hn::Zero(d);
    auto turn = h - set(1.0f / 6.0f);
    turn = hn::IfThenElse(hn::Lt(luma, zero), turn + set(0.5f), turn);
    const auto sixths = set(6.0f) * (turn - hn::Floor(turn));
    auto r = unit_clamped(d, hn::Abs(sixths - set(3.0f)) - set(1.0f));
    auto g = unit_clamped(d, set(2.0f) - hn::Abs(sixths - set(2.0f)));
    auto b = unit_clamped(d, set(2.0f) - hn::Abs(sixths - set(4.0f)));
    const auto scale = luma / luma_of(d, r, g, b);
    r = r * scale;
    g = g * scale;
    b = b * scale;
    const auto spread = spread_of(r, g, b, luma);
    auto gain = zero;
    if (STYLE == GradingStyle::Linear) {
        gain = linear_gain(d, s, luma, r + g + b, spread);
    } else {
        gain = s / larger(set(1e-10f), set(STYLE == GradingStyle::Log ? 4.0f : 1.25f) * spread);
    }
    h = luma + gain * (r - luma);
    s = luma + gain * (g - luma);
    y = luma + gain * (b - luma);
}

} // namespace HWY_NAMESPACE
} // namespace pixel
HWY_AFTER_NAMESPACE();

#endif
