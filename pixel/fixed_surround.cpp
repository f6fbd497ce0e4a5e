#include "pixel/fixed_function.h"

#include <cmath>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "pixel/fixed_surround.cpp"
#include "pixel/vector_targets.h"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "pixel/colors-inl.h"
#include "pixel/power-inl.h"

HWY_BEFORE_NAMESPACE();
namespace pixel {
namespace HWY_NAMESPACE {

/// k: weights of red, green and blue in the luminance, least luminance, exponent; 1 where the magnitude of
/// the luminance counts.
void surround(const FunctionStage& stage, Block& block) {
    with_power(stage.k[4], [&](const auto& power) HWY_ATTR {
        map_colors(block, [&](auto d, auto& r, auto& g, auto& b) HWY_ATTR {
            const auto sum = weighted_sum(d, r, g, b, stage.k[0], stage.k[1], stage.k[2]);
            const auto light = larger(hn::Set(d, stage.k[3]), stage.k[5] != 0 ? hn::Abs(sum) : sum);
            const auto factor = power_of(d, power, light);
            r = hn::Mul(r, factor);
            g = hn::Mul(g, factor);
            b = hn::Mul(b, factor);
        });
    });
}

} // namespace HWY_NAMESPACE
} // namespace pixel
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace pixel {

HWY_EXPORT(surround);

namespace {

void run_surround(const FunctionStage& stage, Block& block) {
    HWY_DYNAMIC_DISPATCH(surround)(stage, block);
}

} // namespace

FunctionStage compile_dark_to_dim(const FixedFunction& op) {
    const float gamma = op.direction == Direction::Forward ? 0.9811f : 1.0192640913260627f;
    return {run_surround,
            {0.27222871678091454f, 0.67408176581114831f, 0.053689517407937051f, 1e-10f, gamma - 1.0f}};
}

FunctionStage compile_surround(const FixedFunction& op) {
    constexpr float LEAST = 1e-4f;
    const bool forward = op.direction == Direction::Forward;
    const bool mirrored = op.style == FixedStyle::Rec2100SurroundMirrored;
    const double parameter = op.parameters[0];
    const auto gamma = static_cast<float>(forward ? parameter : 1 / parameter);
    const float least = mirrored && !forward ? std::pow(LEAST, static_cast<float>(parameter)) : LEAST;
    return {run_surround, {0.2627f, 0.6780f, 0.0593f, least, gamma - 1.0f, mirrored ? 1.0f : 0.0f}};
}

} // namespace pixel
#endif
