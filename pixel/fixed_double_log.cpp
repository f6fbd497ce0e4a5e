#include "pixel/fixed_function.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "pixel/fixed_double_log.cpp"
#include "pixel/vector_targets.h"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "pixel/wide-inl.h"

HWY_BEFORE_NAMESPACE();
namespace pixel {
namespace HWY_NAMESPACE {

/// wide: the two breaks; slope by the base-2 logarithm, offset, linear slope and linear offset of the low and
/// of the high logarithm; slope and offset of the line.
constexpr std::size_t LOW = 2, HIGH = 6, LINE = 10;

template <class DD>
HWY_INLINE hn::Vec<DD> choose(DD dd, const FunctionStage& stage, hn::Vec<DD> v, hn::Vec<DD> low,
                              hn::Vec<DD> line, hn::Vec<DD> high) {
    const auto rest = hn::IfThenElse(hn::Lt(v, hn::Set(dd, stage.wide[1])), line, high);
    return hn::IfThenElse(hn::Le(v, hn::Set(dd, stage.wide[0])), low, rest);
}

void to_double_log(const FunctionStage& stage, Block& block) {
    map_channels(block, [&](auto dd, auto v) HWY_ATTR {
        const auto set = [&](std::size_t i) HWY_ATTR { return hn::Set(dd, stage.wide[i]); };
        const auto logarithm = [&](std::size_t i) HWY_ATTR {
            return hn::MulAdd(set(i), log2_wide(dd, hn::MulAdd(set(i + 2), v, set(i + 3))), set(i + 1));
        };
        return choose(dd, stage, v, logarithm(LOW), hn::MulAdd(set(LINE), v, set(LINE + 1)), logarithm(HIGH));
    });
}

void from_double_log(const FunctionStage& stage, Block& block) {
    map_channels(block, [&](auto dd, auto v) HWY_ATTR {
        const auto set = [&](std::size_t i) HWY_ATTR { return hn::Set(dd, stage.wide[i]); };
        const auto power = [&](std::size_t i) HWY_ATTR {
            const auto p = exp2_wide(dd, hn::Div(hn::Sub(v, set(i + 1)), set(i)));
            return hn::Div(hn::Sub(p, set(i + 3)), set(i + 2));
        };
        const auto line = hn::Div(hn::Sub(v, set(LINE + 1)), set(LINE));
        return choose(dd, stage, v, power(LOW), line, power(HIGH));
    });
}

} // namespace HWY_NAMESPACE
} // namespace pixel
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace pixel {

HWY_EXPORT(to_double_log);
HWY_EXPORT(from_double_log);

namespace {

void run_forward(const FunctionStage& stage, Block& block) {
    HWY_DYNAMIC_DISPATCH(to_double_log)(stage, block);
}

void run_inverse(const FunctionStage& stage, Block& block) {
    HWY_DYNAMIC_DISPATCH(from_double_log)(stage, block);
}

} // namespace

FunctionStage compile_double_log(const FixedFunction& op) {
    const auto& p = op.parameters;
    if (!(p[0] > 0) || p[0] == 1 || !(p[1] <= p[2])) {
        throw std::invalid_argument(
            "two logarithms: the base is positive and not 1, the breaks are in order");
    }
    const double log_of_base = std::log2(p[0]);
    const auto at = [&](std::size_t i, double x) {
        return p[i] * std::log2(p[i + 2] * x + p[i + 3]) / log_of_base + p[i + 1];
    };
    const bool forward = op.direction == Direction::Forward;
    FunctionStage stage{forward ? run_forward : run_inverse, {}};
    stage.wide = {forward ? p[1] : at(3, p[1]), forward ? p[2] : at(7, p[2])};
    std::copy(p.begin() + 3, p.end(), stage.wide.begin() + 2);
    stage.wide[2] /= log_of_base;
    stage.wide[6] /= log_of_base;
    return stage;
}

} // namespace pixel
#endif
