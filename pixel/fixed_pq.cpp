#include "pixel/fixed_function.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "pixel/fixed_pq.cpp"
#include "pixel/vector_targets.h"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "pixel/wide-inl.h"

HWY_BEFORE_NAMESPACE();
namespace pixel {
namespace HWY_NAMESPACE {

// SMPTE ST 2084, of signals where 1 is 100 nit of the 10,000.
constexpr double M1 = 0.1593017578125, M2 = 78.84375;
constexpr double C1 = 0.8359375, C2 = 18.8515625, C3 = 18.6875;
constexpr double SCALE = 100;

void linear_to_pq(const FunctionStage&, Block& block) {
    map_channels(block, [](auto dd, auto v) HWY_ATTR {
        const auto set = [&](double c) HWY_ATTR { return hn::Set(dd, c); };
        const auto y = power_wide(dd, hn::Mul(hn::Abs(v), set(1 / SCALE)), set(M1));
        const auto ratio = hn::Div(hn::MulAdd(y, set(C2), set(C1)), hn::MulAdd(y, set(C3), set(1.0)));
        return hn::CopySign(power_wide(dd, ratio, set(M2)), v);
    });
}

void pq_to_linear(const FunctionStage&, Block& block) {
    map_channels(block, [](auto dd, auto v) HWY_ATTR {
        const auto set = [&](double c) HWY_ATTR { return hn::Set(dd, c); };
        const auto x = power_wide(dd, hn::Abs(v), set(1 / M2));
        const auto above = larger(hn::Zero(dd), hn::Sub(x, set(C1)));
        const auto light = power_wide(dd, hn::Div(above, hn::Sub(set(C2), hn::Mul(set(C3), x))), set(1 / M1));
        return hn::CopySign(hn::Mul(light, set(SCALE)), v);
    });
}

} // namespace HWY_NAMESPACE
} // namespace pixel
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace pixel {

HWY_EXPORT(linear_to_pq);
HWY_EXPORT(pq_to_linear);

namespace {

void run_forward(const FunctionStage& stage, Block& block) {
    HWY_DYNAMIC_DISPATCH(linear_to_pq)(stage, block);
}

void run_inverse(const FunctionStage& stage, Block& block) {
    HWY_DYNAMIC_DISPATCH(pq_to_linear)(stage, block);
}

} // namespace

FunctionStage compile_pq(const FixedFunction& op) {
    return {op.direction == Direction::Forward ? run_forward : run_inverse, {}};
}

} // namespace pixel
#endif
