#include "pixel/fixed_function.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "pixel/fixed_cie.cpp"
#include "pixel/vector_targets.h"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "pixel/colors-inl.h"
#include "pixel/power-inl.h"

HWY_BEFORE_NAMESPACE();
namespace pixel {
namespace HWY_NAMESPACE {

/// numerator / x, and 0 where x is 0.
template <class D>
HWY_INLINE hn::Vec<D> over(D d, float numerator, hn::Vec<D> x) {
    return hn::IfThenElse(hn::Eq(x, hn::Zero(d)), hn::Zero(d), hn::Div(hn::Set(d, numerator), x));
}

template <class D>
HWY_INLINE hn::Vec<D> times(D d, float factor, hn::Vec<D> x) {
    return hn::Mul(hn::Set(d, factor), x);
}

/// u' and v' in place of x and z.
template <class D>
HWY_INLINE void to_uv(D d, hn::Vec<D>& x, hn::Vec<D> y, hn::Vec<D>& z) {
    const auto sum = hn::Add(hn::Add(x, times(d, 15, y)), times(d, 3, z));
    const auto part = over(d, 1, sum);
    x = hn::Mul(times(d, 4, x), part);
    z = hn::Mul(times(d, 9, y), part);
}

void xyz_to_xyy(const FunctionStage&, Block& block) {
    map_colors(block, [&](auto d, auto& x, auto& y, auto& z) HWY_ATTR {
        const auto part = over(d, 1, hn::Add(hn::Add(x, y), z));
        z = y;
        x = hn::Mul(x, part);
        y = hn::Mul(y, part);
    });
}

void xyy_to_xyz(const FunctionStage&, Block& block) {
    map_colors(block, [&](auto d, auto& x, auto& y, auto& z) HWY_ATTR {
        const auto light = z, part = over(d, 1, y);
        const auto rest = hn::Sub(hn::Sub(hn::Set(d, 1.0f), x), y);
        x = hn::Mul(hn::Mul(light, x), part);
        y = light;
        z = hn::Mul(hn::Mul(light, rest), part);
    });
}

void xyz_to_uvy(const FunctionStage&, Block& block) {
    map_colors(block, [&](auto d, auto& x, auto& y, auto& z) HWY_ATTR {
        const auto light = y;
        to_uv(d, x, y, z);
        y = z;
        z = light;
    });
}

void uvy_to_xyz(const FunctionStage&, Block& block) {
    map_colors(block, [&](auto d, auto& x, auto& y, auto& z) HWY_ATTR {
        const auto u = x, v = y, light = z, part = over(d, 1, v);
        x = hn::Mul(hn::Mul(times(d, 2.25f, light), u), part);
        y = light;
        const auto rest = hn::Sub(hn::Sub(hn::Set(d, 4.0f), u), times(d, 6.666666666666667f, v));
        z = hn::Mul(hn::Mul(times(d, 0.75f, light), rest), part);
    });
}

constexpr float U_WHITE = 0.19783001f, V_WHITE = 0.46831999f;

void xyz_to_luv(const FunctionStage&, Block& block) {
    const ModeratePower cube_root{static_cast<double>(0.333333333f)};
    map_colors(block, [&](auto d, auto& x, auto& y, auto& z) HWY_ATTR {
        const auto light = y;
        to_uv(d, x, y, z);
        const auto root = power_of(d, cube_root, light);
        const auto curved = hn::Sub(times(d, 1.16f, root), hn::Set(d, 0.16f));
        const auto dark = hn::Le(light, hn::Set(d, 0.008856451679f));
        const auto l = hn::IfThenElse(dark, times(d, 9.0329629629629608f, light), curved);
        const auto scaled = times(d, 13, l);
        y = hn::Mul(scaled, hn::Sub(x, hn::Set(d, U_WHITE)));
        z = hn::Mul(scaled, hn::Sub(z, hn::Set(d, V_WHITE)));
        x = l;
    });
}

void luv_to_xyz(const FunctionStage&, Block& block) {
    map_colors(block, [&](auto d, auto& x, auto& y, auto& z) HWY_ATTR {
        const auto l = x, part = over(d, 1.0f / 13.0f, l);
        const auto u = hn::Add(hn::Mul(y, part), hn::Set(d, U_WHITE));
        const auto v = hn::Add(hn::Mul(z, part), hn::Set(d, V_WHITE));
        const auto root = hn::Mul(hn::Add(l, hn::Set(d, 0.16f)), hn::Set(d, 0.86206896551724133f));
        const auto cube = hn::Mul(hn::Mul(root, root), root);
        const auto dark = hn::Le(l, hn::Set(d, 0.08f));
        const auto light = hn::IfThenElse(dark, times(d, 0.11070564598794539f, l), cube);
        const auto quarter = over(d, 0.25f, v);
        x = hn::Mul(hn::Mul(times(d, 9, light), u), quarter);
        y = light;
        const auto rest = hn::Sub(hn::Sub(hn::Set(d, 12.0f), times(d, 3, u)), times(d, 20, v));
        z = hn::Mul(hn::Mul(light, rest), quarter);
    });
}

} // namespace HWY_NAMESPACE
} // namespace pixel
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace pixel {

HWY_EXPORT(xyz_to_xyy);
HWY_EXPORT(xyy_to_xyz);
HWY_EXPORT(xyz_to_uvy);
HWY_EXPORT(uvy_to_xyz);
HWY_EXPORT(xyz_to_luv);
HWY_EXPORT(luv_to_xyz);

namespace {

void run_to_xyy(const FunctionStage& stage, Block& block) {
    HWY_DYNAMIC_DISPATCH(xyz_to_xyy)(stage, block);
}
void run_from_xyy(const FunctionStage& stage, Block& block) {
    HWY_DYNAMIC_DISPATCH(xyy_to_xyz)(stage, block);
}
void run_to_uvy(const FunctionStage& stage, Block& block) {
    HWY_DYNAMIC_DISPATCH(xyz_to_uvy)(stage, block);
}
void run_from_uvy(const FunctionStage& stage, Block& block) {
    HWY_DYNAMIC_DISPATCH(uvy_to_xyz)(stage, block);
}
void run_to_luv(const FunctionStage& stage, Block& block) {
    HWY_DYNAMIC_DISPATCH(xyz_to_luv)(stage, block);
}
void run_from_luv(const FunctionStage& stage, Block& block) {
    HWY_DYNAMIC_DISPATCH(luv_to_xyz)(stage, block);
}

} // namespace

FunctionStage compile_xyy(const FixedFunction& op) {
    return {op.direction == Direction::Forward ? run_to_xyy : run_from_xyy, {}};
}

FunctionStage compile_uvy(const FixedFunction& op) {
    return {op.direction == Direction::Forward ? run_to_uvy : run_from_uvy, {}};
}

FunctionStage compile_luv(const FixedFunction& op) {
    return {op.direction == Direction::Forward ? run_to_luv : run_from_luv, {}};
}

} // namespace pixel
#endif
