#include "pixel/fixed_function.h"

#include <cstddef>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "pixel/fixed_red_modifier.cpp"
#include "pixel/vector_targets.h"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "pixel/colors-inl.h"
#include "pixel/wide-inl.h"

HWY_BEFORE_NAMESPACE();
namespace pixel {
namespace HWY_NAMESPACE {

constexpr double PIVOT = 0.03;

/// atan(t) / t in t^2, interpolated at the Chebyshev nodes of [0, tan(pi/8)^2]: within 7e-10 for floats,
/// 3e-14 for doubles.
constexpr float ATAN_SINGLE[] = {0x1.fffffffa9950fp-1f,  -0x1.55554396ed622p-2f, 0x1.999012eb495b6p-3f,
                                 -0x1.23a0293a54dddp-3f, 0x1.b0f0b02a4c962p-4f,  -0x1.edacc7e233075p-5f};
constexpr double ATAN_DOUBLE[] = {0x1.fffffffffff0fp-1,  -0x1.55555554e622ap-2, 0x1.99999911eb612p-3,
                                  -0x1.249229215b438p-3, 0x1.c714d5688c609p-4,  -0x1.73d9df0613bd0p-4,
                                  0x1.35cf62ef9ed47p-4,  -0x1.e13ec0bd86303p-5, 0x1.f663af8bc3ae1p-6};

template <class D, class T, std::size_t N>
HWY_INLINE hn::Vec<D> polynomial(D d, const T (&c)[N], hn::Vec<D> x) {
    auto sum = hn::Set(d, c[N - 1]);
    for (std::size_t i = N - 1; i > 0; --i) {
        sum = hn::MulAdd(sum, x, hn::Set(d, c[i - 1]));
    }
    return sum;
}

/// Angle of (x, y) for x >= 0 within 67.5 degrees of the x axis; halves keep the sum from overflowing. The
/// result is undefined for other arguments.
template <class D>
HWY_INLINE hn::Vec<D> hue_angle(D d, hn::Vec<D> x, hn::Vec<D> y) {
    using T = hn::TFromD<D>;
    const auto half = hn::Set(d, static_cast<T>(0.5)), zero = hn::Zero(d);
    const auto magnitude = hn::Abs(y);
    const auto equal = hn::And(hn::Eq(magnitude, x), hn::Gt(x, zero)); // infinities, too
    const auto steep =
        hn::Or(equal, hn::Gt(magnitude, hn::Mul(x, hn::Set(d, static_cast<T>(0x1.a827999fcef32p-2)))));
    const auto hx = hn::Mul(half, x), hy = hn::Mul(half, magnitude);
    const auto above = hn::IfThenElse(steep, hn::Sub(hy, hx), magnitude);
    const auto below = hn::IfThenElse(steep, hn::Add(hy, hx), x);
    const auto flat = hn::Or(equal, hn::Eq(above, zero));
    const auto t = hn::IfThenElse(flat, zero, hn::Div(above, below));
    hn::Vec<D> series;
    if constexpr (sizeof(T) == sizeof(float)) {
        series = polynomial(d, ATAN_SINGLE, hn::Mul(t, t));
    } else {
        series = polynomial(d, ATAN_DOUBLE, hn::Mul(t, t));
    }
    const auto base = hn::IfThenElseZero(steep, hn::Set(d, static_cast<T>(0x1.921fb54442d18p-1)));
    return hn::CopySign(hn::MulAdd(series, t, base), y);
}

/// A cubic B-spline over the hue, above 0 around red only. The very ends of its support, where it is below
/// 1e-21, do not count.
template <class D>
HWY_INLINE hn::Vec<D> hue_weight(D d, hn::Vec<D> r, hn::Vec<D> g, hn::Vec<D> b, hn::TFromD<D> width) {
    using T = hn::TFromD<D>;
    const auto set = [&](double v) HWY_ATTR { return hn::Set(d, static_cast<T>(v)); };
    const auto x = hn::Sub(hn::Mul(set(2), r), hn::Add(g, b));
    const auto y = hn::Mul(set(1.7320508075688772), hn::Sub(g, b));
    const auto knot = hn::Add(hn::Mul(hue_angle(d, x, y), hn::Set(d, width)), set(2));
    const auto in_support = hn::And(hn::Gt(knot, set(1e-7)), hn::Lt(knot, set(4 - 1e-7)));
    const auto inside = hn::And(hn::Ge(x, hn::Zero(d)), in_support);
    // The spline is symmetric about 2, and small numbers cancel least on the rising side.
    const auto rising = hn::Min(knot, hn::Sub(set(4), knot));
    const auto t = hn::Sub(rising, set(1));
    const auto outer = hn::Mul(hn::Mul(hn::Mul(rising, rising), rising), set(0.25));
    auto inner = hn::Add(hn::Mul(set(-0.75), t), set(0.75));
    inner = hn::Add(hn::Mul(inner, t), set(0.75));
    inner = hn::Add(hn::Mul(inner, t), set(0.25));
    const auto weight = hn::IfThenElse(hn::Lt(rising, set(1)), outer, inner);
    return hn::IfThenElseZero(inside, weight);
}

/// Keeps the hue where only red has changed: the middle channel moves with it.
template <class D>
HWY_INLINE void restore_hue(D d, hn::Vec<D> old_red, hn::Vec<D> red, hn::Mask<D> active, hn::Vec<D>& g,
                            hn::Vec<D>& b) {
    const auto tiny = hn::Set(d, static_cast<hn::TFromD<D>>(1e-10f));
    const auto green_is_middle = hn::Ge(g, b);
    const auto middle = hn::IfThenElse(green_is_middle, g, b), least = hn::IfThenElse(green_is_middle, b, g);
    const auto share = hn::Div(hn::Sub(middle, least), larger(tiny, hn::Sub(old_red, least)));
    const auto moved = hn::Add(hn::Mul(share, hn::Sub(red, least)), least);
    g = hn::IfThenElse(hn::And(active, green_is_middle), moved, g);
    b = hn::IfThenElse(hn::And(active, hn::Not(green_is_middle)), moved, b);
}

/// Red moved towards the pivot, by the weight of its hue and the saturation.
template <class D>
HWY_INLINE hn::Vec<D> modified_red(D d, hn::Vec<D> r, hn::Vec<D> g, hn::Vec<D> b, hn::Vec<D> weight,
                                   hn::TFromD<D> scale) {
    auto change = hn::Mul(weight, aces_saturation(d, r, g, b));
    change = hn::Mul(change, hn::Sub(hn::Set(d, static_cast<hn::TFromD<D>>(PIVOT)), r));
    return hn::Add(r, hn::Mul(change, hn::Set(d, scale)));
}

/// k: width of the hue window, 1 - scale of red.
void red_forward_10(const FunctionStage& stage, Block& block) {
    map_colors(block, [&](auto d, auto& r, auto& g, auto& b) HWY_ATTR {
        const auto weight = hue_weight(d, r, g, b, stage.k[0]);
        const auto active = hn::Gt(weight, hn::Zero(d));
        if (!hn::AllFalse(d, active)) {
            r = hn::IfThenElse(active, modified_red(d, r, g, b, weight, stage.k[1]), r);
        }
    });
}

/// Restoring the hue magnifies roundings. wide: as k.
void red_forward_03(const FunctionStage& stage, Block& block) {
    map_colors(block, [&](auto d, auto& r, auto& g, auto& b) HWY_ATTR {
        change_wide(d, r, g, b, [&](auto dd, auto& rw, auto& gw, auto& bw) HWY_ATTR {
            const auto weight = hue_weight(dd, rw, gw, bw, stage.wide[0]);
            const auto active = hn::Gt(weight, hn::Zero(dd));
            const auto red = modified_red(dd, rw, gw, bw, weight, stage.wide[1]);
            restore_hue(dd, rw, red, active, gw, bw);
            rw = hn::IfThenElse(active, red, rw);
        });
    });
}

/// The root of the quadratic equation that the forward direction poses.
template <class DD>
HWY_INLINE hn::Vec<DD> original_red(DD dd, hn::Vec<DD> r, hn::Vec<DD> least, hn::Vec<DD> weight,
                                    double scale) {
    const auto share = hn::Mul(weight, hn::Set(dd, scale)), pivot = hn::Set(dd, PIVOT);
    const auto a = hn::Sub(share, hn::Set(dd, 1.0));
    const auto b = hn::Sub(r, hn::Mul(share, hn::Add(pivot, least)));
    const auto c = hn::Mul(share, hn::Mul(pivot, least));
    const auto radicand = hn::Sub(hn::Mul(b, b), hn::Mul(hn::Set(dd, 4.0), hn::Mul(a, c)));
    return hn::Div(hn::Sub(hn::Neg(b), hn::Sqrt(radicand)), hn::Add(a, a));
}

template <bool RESTORES>
void red_inverse(const FunctionStage& stage, Block& block) {
    map_colors(block, [&](auto d, auto& r, auto& g, auto& b) HWY_ATTR {
        change_wide(d, r, g, b, [&](auto dd, auto& rw, auto& gw, auto& bw) HWY_ATTR {
            const auto weight = hue_weight(dd, rw, gw, bw, stage.wide[0]);
            const auto active = hn::Gt(weight, hn::Zero(dd));
            const auto least = hn::IfThenElse(hn::Lt(gw, bw), gw, bw);
            const auto red = original_red(dd, rw, least, weight, stage.wide[1]);
            if (RESTORES) {
                restore_hue(dd, rw, red, active, gw, bw);
            }
            rw = hn::IfThenElse(active, red, rw);
        });
    });
}

void red_inverse_03(const FunctionStage& stage, Block& block) {
    red_inverse<true>(stage, block);
}
void red_inverse_10(const FunctionStage& stage, Block& block) {
    red_inverse<false>(stage, block);
}

} // namespace HWY_NAMESPACE
} // namespace pixel
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace pixel {

HWY_EXPORT(red_forward_03);
HWY_EXPORT(red_forward_10);
HWY_EXPORT(red_inverse_03);
HWY_EXPORT(red_inverse_10);

namespace {

void run_forward_03(const FunctionStage& stage, Block& block) {
    HWY_DYNAMIC_DISPATCH(red_forward_03)(stage, block);
}
void run_forward_10(const FunctionStage& stage, Block& block) {
    HWY_DYNAMIC_DISPATCH(red_forward_10)(stage, block);
}
void run_inverse_03(const FunctionStage& stage, Block& block) {
    HWY_DYNAMIC_DISPATCH(red_inverse_03)(stage, block);
}
void run_inverse_10(const FunctionStage& stage, Block& block) {
    HWY_DYNAMIC_DISPATCH(red_inverse_10)(stage, block);
}

} // namespace

FunctionStage compile_red_modifier(const FixedFunction& op) {
    const bool early = op.style == FixedStyle::AcesRedModifier03,
               forward = op.direction == Direction::Forward;
    FunctionStage stage{early ? (forward ? run_forward_03 : run_inverse_03)
                              : (forward ? run_forward_10 : run_inverse_10),
                        {}};
    stage.wide[0] = early ? 1.9098593171027443 : 1.6976527263135504;
    stage.wide[1] = early ? 0.15 : 0.18;
    stage.k[0] = static_cast<float>(stage.wide[0]);
    stage.k[1] = 1.0f - (early ? 0.85f : 0.82f);
    return stage;
}

} // namespace pixel
#endif
