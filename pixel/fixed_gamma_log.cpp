#include "pixel/fixed_function.h"

#include <cmath>
#include <stdexcept>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "pixel/fixed_gamma_log.cpp"
#include "pixel/vector_targets.h"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "pixel/wide-inl.h"

HWY_BEFORE_NAMESPACE();
namespace pixel {
namespace HWY_NAMESPACE {

/// wide: mirror, break, power, slope and offset of the gamma part; slope by the base-2 logarithm, offset,
/// linear slope and linear offset of the other one.
struct GammaLog {
    const std::array<double, 16>& k;

    template <class DD>
    HWY_INLINE hn::Vec<DD> fold(DD dd, hn::Vec<DD> v) const {
        const auto mirror = hn::Set(dd, k[0]);
        return hn::Add(hn::Abs(hn::Sub(v, mirror)), mirror);
    }
    template <class DD>
    HWY_INLINE hn::Vec<DD> choose(DD dd, hn::Vec<DD> v, hn::Vec<DD> below, hn::Vec<DD> above) const {
        const auto out = hn::IfThenElse(hn::Lt(fold(dd, v), hn::Set(dd, k[1])), below, above);
        return hn::Mul(out, hn::CopySign(hn::Set(dd, 1.0), hn::Sub(v, hn::Set(dd, k[0]))));
    }
};

void to_gamma_log(const FunctionStage& stage, Block& block) {
    const GammaLog curve{stage.wide};
    map_channels(block, [&](auto dd, auto v) HWY_ATTR {
        const auto set = [&](std::size_t i) HWY_ATTR { return hn::Set(dd, curve.k[i]); };
        const auto x = curve.fold(dd, v);
        const auto gamma = hn::Mul(set(3), power_wide(dd, hn::Add(x, set(4)), set(2)));
        const auto logarithm = hn::MulAdd(set(5), log2_wide(dd, hn::MulAdd(set(7), x, set(8))), set(6));
        return curve.choose(dd, v, gamma, logarithm);
    });
}

/// Mirror and break are those of the result.
void from_gamma_log(const FunctionStage& stage, Block& block) {
    const GammaLog curve{stage.wide};
    map_channels(block, [&](auto dd, auto v) HWY_ATTR {
        const auto set = [&](std::size_t i) HWY_ATTR { return hn::Set(dd, curve.k[i]); };
        const auto y = curve.fold(dd, v);
        const auto root = hn::Div(hn::Set(dd, 1.0), set(2));
        const auto gamma = hn::Sub(power_wide(dd, hn::Div(y, set(3)), root), set(4));
        const auto power = exp2_wide(dd, hn::Div(hn::Sub(y, set(6)), set(5)));
        return curve.choose(dd, v, gamma, hn::Div(hn::Sub(power, set(8)), set(7)));
    });
}

} // namespace HWY_NAMESPACE
} // namespace pixel
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace pixel {

HWY_EXPORT(to_gamma_log);
HWY_EXPORT(from_gamma_log);

namespace {

void run_forward(const FunctionStage& stage, Block& block) {
    HWY_DYNAMIC_DISPATCH(to_gamma_log)(stage, block);
}

void run_inverse(const FunctionStage& stage, Block& block) {
    HWY_DYNAMIC_DISPATCH(from_gamma_log)(stage, block);
}

} // namespace

FunctionStage compile_gamma_log(const FixedFunction& op) {
    const auto& p = op.parameters;
    const double power = p[2], slope = p[3], offset = p[4], base = p[5];
    if (!(base > 0) || base == 1 || !(p[0] < p[1]) || power == 0) {
        throw std::invalid_argument(
            "gamma and logarithm: the base is positive and not 1, the mirror below the "
            "break, the power not 0");
    }
    const bool forward = op.direction == Direction::Forward;
    const auto gamma = [&](double x) { return forward ? x : slope * std::pow(x + offset, power); };
    FunctionStage stage{forward ? run_forward : run_inverse, {}};
    stage.wide = {gamma(p[0]), gamma(p[1]), power, slope, offset, p[6] / std::log2(base), p[7], p[8], p[9]};
    return stage;
}

} // namespace pixel
#endif
