#include "pixel/fixed_function.h"

#include <cmath>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "pixel/fixed_gamut_compression.cpp"
#include "pixel/vector_targets.h"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "pixel/wide-inl.h"

HWY_BEFORE_NAMESPACE();
namespace pixel {
namespace HWY_NAMESPACE {

/// Distances from the achromatic axis beyond the threshold, compressed or expanded. In double precision: both
/// directions subtract nearly equal numbers.
template <bool FORWARD, class DD>
HWY_INLINE hn::Vec<DD> compressed(DD dd, hn::Vec<DD> distance, double threshold, double scale, double power) {
    const auto one = hn::Set(dd, 1.0), start = hn::Set(dd, threshold), width = hn::Set(dd, scale);
    const auto n = hn::Div(hn::Sub(distance, start), width);
    const auto raised = power_wide(dd, n, hn::Set(dd, power));
    const auto root = hn::Set(dd, 1 / power);
    if (FORWARD) {
        const auto divisor = power_wide(dd, hn::Add(one, raised), root);
        return hn::Add(start, hn::Mul(width, hn::Div(n, divisor)));
    }
    const auto base = hn::Div(raised, hn::Sub(one, raised));
    const auto expanded = hn::Add(start, hn::Mul(width, power_wide(dd, base, root)));
    return hn::IfThenElse(hn::Lt(distance, hn::Add(start, width)), expanded, distance);
}

/// k: thresholds of the three channels. wide: thresholds, scales, power.
template <bool FORWARD>
void gamut_compression(const FunctionStage& stage, Block& block) {
    map_colors(block, [&](auto d, auto& r, auto& g, auto& b) HWY_ATTR {
        const auto axis = larger(r, larger(g, b)), zero = hn::Zero(d), size = hn::Abs(axis);
        const auto black = hn::Eq(axis, zero);
        const auto change = [&](std::size_t c, auto& v) HWY_ATTR {
            const auto distance = hn::Div(hn::Sub(axis, v), size);
            const auto inside = hn::Lt(distance, hn::Set(d, stage.k[c]));
            if (!hn::AllTrue(d, hn::Or(inside, black))) {
                auto out = axis, unused = axis;
                auto value = v;
                change_wide(d, out, value, unused, [&](auto dd, auto& a, auto& x, auto&) HWY_ATTR {
                    const auto exact = hn::Div(hn::Sub(a, x), hn::Abs(a));
                    const auto moved =
                        compressed<FORWARD>(dd, exact, stage.wide[c], stage.wide[3 + c], stage.wide[6]);
                    a = hn::IfThenElse(hn::Lt(exact, hn::Set(dd, stage.wide[c])), x,
                                       hn::Sub(a, hn::Mul(moved, hn::Abs(a))));
                });
                v = hn::IfThenElse(inside, v, out);
            }
            v = hn::IfThenElse(black, zero, v);
        };
        change(0, r);
        change(1, g);
        change(2, b);
    });
}

void gamut_compress(const FunctionStage& stage, Block& block) {
    gamut_compression<true>(stage, block);
}

void gamut_expand(const FunctionStage& stage, Block& block) {
    gamut_compression<false>(stage, block);
}

} // namespace HWY_NAMESPACE
} // namespace pixel
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace pixel {

HWY_EXPORT(gamut_compress);
HWY_EXPORT(gamut_expand);

namespace {

void run_forward(const FunctionStage& stage, Block& block) {
    HWY_DYNAMIC_DISPATCH(gamut_compress)(stage, block);
}

void run_inverse(const FunctionStage& stage, Block& block) {
    HWY_DYNAMIC_DISPATCH(gamut_expand)(stage, block);
}

} // namespace

/// The limit of each channel is the distance that becomes 1.
FunctionStage compile_gamut_compression(const FixedFunction& op) {
    FunctionStage stage{op.direction == Direction::Forward ? run_forward : run_inverse, {}};
    const double power = op.parameters[6];
    for (std::size_t c = 0; c < 3; ++c) {
        const double limit = op.parameters[c], threshold = op.parameters[3 + c], reach = limit - threshold;
        stage.k[c] = static_cast<float>(threshold);
        stage.wide[c] = threshold;
        stage.wide[3 + c] = reach / std::pow(std::pow((1 - threshold) / reach, -power) - 1, 1 / power);
    }
    stage.wide[6] = power;
    return stage;
}

} // namespace pixel
#endif
