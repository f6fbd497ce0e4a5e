#include "pixel/fixed_function.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "pixel/fixed_glow.cpp"
#include "pixel/vector_targets.h"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "pixel/colors-inl.h"

HWY_BEFORE_NAMESPACE();
namespace pixel {
namespace HWY_NAMESPACE {

/// Luminance with a share of the chroma. The radicand is never negative where every product is rounded.
template <class D>
HWY_INLINE hn::Vec<D> ycc(D d, hn::Vec<D> r, hn::Vec<D> g, hn::Vec<D> b) {
    auto radicand = hn::Add(hn::Mul(b, hn::Sub(b, g)), hn::Mul(g, hn::Sub(g, r)));
    radicand = hn::Add(radicand, hn::Mul(r, hn::Sub(r, b)));
    const auto sum = hn::Add(hn::Add(b, g), r);
    return hn::Div(hn::Add(sum, hn::Mul(hn::Set(d, 1.75f), hn::Sqrt(radicand))), hn::Set(d, 3.0f));
}

/// A sigmoid of the saturation, centered at 0.4.
template <class D>
HWY_INLINE hn::Vec<D> shaper(D d, hn::Vec<D> saturation) {
    const auto one = hn::Set(d, 1.0f), half = hn::Set(d, 0.5f);
    const auto x = hn::Mul(hn::Sub(saturation, hn::Set(d, 0.4f)), hn::Set(d, 5.0f));
    const auto sign = hn::CopySign(one, x);
    const auto t = larger(hn::Zero(d), hn::Sub(one, hn::Mul(hn::Mul(half, sign), x)));
    return hn::Mul(hn::Add(one, hn::Mul(sign, hn::Sub(one, hn::Mul(t, t)))), half);
}

/// k: gain, mid.
template <bool FORWARD>
void glow(const FunctionStage& stage, Block& block) {
    const float mid_value = stage.k[1];
    map_colors(block, [&](auto d, auto& r, auto& g, auto& b) HWY_ATTR {
        const auto one = hn::Set(d, 1.0f), half = hn::Set(d, 0.5f);
        const auto mid = hn::Set(d, mid_value);
        const auto light = ycc(d, r, g, b);
        const auto bright = hn::Ge(light, hn::Set(d, mid_value * 2));
        if (hn::AllTrue(d, bright)) {
            return;
        }
        const auto gain = hn::Mul(hn::Set(d, stage.k[0]), shaper(d, aces_saturation(d, r, g, b)));
        const auto slope = hn::Mul(gain, hn::Sub(hn::Div(mid, light), half));
        auto low = gain, low_end = hn::Set(d, mid_value * 2 / 3), middle = slope;
        if (!FORWARD) {
            const auto more = hn::Add(one, gain);
            low = hn::Div(hn::Neg(gain), more);
            low_end = hn::Div(hn::Mul(hn::Mul(more, mid), hn::Set(d, 2.0f)), hn::Set(d, 3.0f));
            middle = hn::Div(slope, hn::Sub(hn::Mul(gain, half), one));
        }
        auto amount = hn::IfThenElse(hn::Le(light, low_end), low, middle);
        amount = hn::IfThenElse(bright, hn::Zero(d), amount);
        amount = hn::Add(one, amount);
        r = hn::Mul(r, amount);
        g = hn::Mul(g, amount);
        b = hn::Mul(b, amount);
    });
}

void glow_forward(const FunctionStage& stage, Block& block) {
    glow<true>(stage, block);
}

void glow_inverse(const FunctionStage& stage, Block& block) {
    glow<false>(stage, block);
}

} // namespace HWY_NAMESPACE
} // namespace pixel
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace pixel {

HWY_EXPORT(glow_forward);
HWY_EXPORT(glow_inverse);

namespace {

void run_forward(const FunctionStage& stage, Block& block) {
    HWY_DYNAMIC_DISPATCH(glow_forward)(stage, block);
}

void run_inverse(const FunctionStage& stage, Block& block) {
    HWY_DYNAMIC_DISPATCH(glow_inverse)(stage, block);
}

} // namespace

FunctionStage compile_glow(const FixedFunction& op) {
    FunctionStage stage{op.direction == Direction::Forward ? run_forward : run_inverse, {}};
    const bool early = op.style == FixedStyle::AcesGlow03;
    stage.k[0] = early ? 0.075f : 0.05f;
    stage.k[1] = early ? 0.1f : 0.08f;
    return stage;
}

} // namespace pixel
#endif
