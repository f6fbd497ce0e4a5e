#include "pixel/fixed_function.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "pixel/fixed_hsv.cpp"
#include "pixel/vector_targets.h"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "pixel/colors-inl.h"

HWY_BEFORE_NAMESPACE();
namespace pixel {
namespace HWY_NAMESPACE {

/// Negative values are part of the model: the value takes in the least channel, and the saturation goes on to
/// 2 where signs are mixed.
void rgb_to_hsv(const FunctionStage&, Block& block) {
    map_colors(block, [&](auto d, auto& r, auto& g, auto& b) HWY_ATTR {
        const auto zero = hn::Zero(d);
        const auto most = larger(larger(r, g), b), least = smaller(smaller(r, g), b);
        const auto chroma = hn::Sub(most, least);
        const auto gray = hn::Eq(most, least);
        auto hue = hn::Add(hn::Set(d, 4.0f), hn::Div(hn::Sub(r, g), chroma));
        hue = hn::IfThenElse(hn::Eq(g, most), hn::Add(hn::Set(d, 2.0f), hn::Div(hn::Sub(b, r), chroma)), hue);
        hue = hn::IfThenElse(hn::Eq(r, most), hn::Div(hn::Sub(g, b), chroma), hue);
        hue = hn::IfThenElse(hn::Lt(hue, zero), hn::Add(hue, hn::Set(d, 6.0f)), hue);
        auto saturation = hn::IfThenElse(hn::Eq(most, zero), zero, hn::Div(chroma, most));
        saturation = hn::IfThenElse(gray, zero, saturation);
        const auto below = hn::Neg(least);
        r = hn::IfThenElse(gray, zero, hn::Mul(hue, hn::Set(d, 0.16666666666666666f)));
        g = hn::IfThenElse(hn::Gt(below, most), hn::Div(chroma, below), saturation);
        b = hn::IfThenElse(hn::Lt(least, zero), hn::Add(most, least), most);
    });
}

template <class D>
HWY_INLINE hn::Vec<D> unit(D d, hn::Vec<D> v) {
    return smaller(hn::Set(d, 1.0f), larger(hn::Zero(d), v));
}

void hsv_to_rgb(const FunctionStage&, Block& block) {
    map_colors(block, [&](auto d, auto& r, auto& g, auto& b) HWY_ATTR {
        const auto one = hn::Set(d, 1.0f), two = hn::Set(d, 2.0f);
        const auto hue = hn::Mul(hn::Sub(r, hn::Floor(r)), hn::Set(d, 6.0f));
        const auto saturation = smaller(hn::Set(d, 1.999f), larger(hn::Zero(d), g));
        const auto value = b;
        const auto red = unit(d, hn::Sub(hn::Abs(hn::Sub(hue, hn::Set(d, 3.0f))), one));
        const auto green = unit(d, hn::Sub(two, hn::Abs(hn::Sub(hue, two))));
        const auto blue = unit(d, hn::Sub(two, hn::Abs(hn::Sub(hue, hn::Set(d, 4.0f)))));
        const auto plain = hn::Mul(value, hn::Sub(one, saturation));
        const auto mixed = hn::Gt(saturation, one), dark = hn::Lt(value, hn::Zero(d));
        const auto rest = hn::Sub(two, saturation);
        auto low = hn::IfThenElse(mixed, hn::Div(plain, rest), plain);
        low = hn::IfThenElse(dark, hn::Div(value, rest), low);
        const auto high = hn::IfThenElse(hn::Or(mixed, dark), hn::Sub(value, low), value);
        const auto chroma = hn::Sub(high, low);
        r = hn::Add(low, hn::Mul(red, chroma));
        g = hn::Add(low, hn::Mul(green, chroma));
        b = hn::Add(low, hn::Mul(blue, chroma));
    });
}

} // namespace HWY_NAMESPACE
} // namespace pixel
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace pixel {

HWY_EXPORT(rgb_to_hsv);
HWY_EXPORT(hsv_to_rgb);

namespace {

void run_forward(const FunctionStage& stage, Block& block) {
    HWY_DYNAMIC_DISPATCH(rgb_to_hsv)(stage, block);
}

void run_inverse(const FunctionStage& stage, Block& block) {
    HWY_DYNAMIC_DISPATCH(hsv_to_rgb)(stage, block);
}

} // namespace

FunctionStage compile_hsv(const FixedFunction& op) {
    return {op.direction == Direction::Forward ? run_forward : run_inverse, {}};
}

} // namespace pixel
#endif
