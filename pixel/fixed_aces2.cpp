#include "pixel/aces2_tables.h"
#include "pixel/fixed_function.h"

#include <algorithm>
#include <utility>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "pixel/fixed_aces2.cpp"
#include "pixel/vector_targets.h"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "pixel/aces2_run-inl.h"

HWY_BEFORE_NAMESPACE();
namespace pixel {
namespace HWY_NAMESPACE {

void aces2_output(const FunctionStage& stage, Block& block) {
    const Aces2& aces = *stage.aces2;
    Aces2Run run(aces, block);
    run.rgb_to_aab(aces.scene);
    run.to_polar();
    run.find_cosines();
    run.look_up_hues();
    run.map_tones_of_responses();
    run.compress_chroma<true>();
    run.compress_gamut<true>();
    run.j_to_response();
    run.to_cartesian();
    run.aab_to_rgb(aces.display);
}

void aces2_output_inverse(const FunctionStage& stage, Block& block) {
    const Aces2& aces = *stage.aces2;
    Aces2Run run(aces, block);
    run.rgb_to_aab(aces.display);
    run.to_polar();
    run.response_to_j();
    run.find_cosines();
    run.look_up_hues();
    run.compress_gamut<false>();
    run.map_tones_of_j<false>();
    run.compress_chroma<false>();
    run.j_to_response();
    run.to_cartesian();
    run.aab_to_rgb(aces.scene);
}

void aces2_rgb_to_jmh(const FunctionStage& stage, Block& block) {
    Aces2Run run(*stage.aces2, block);
    run.rgb_to_aab(stage.aces2->display);
    run.to_polar();
    run.response_to_j();
}

void aces2_jmh_to_rgb(const FunctionStage& stage, Block& block) {
    Aces2Run run(*stage.aces2, block);
    run.wrap_hues();
    run.find_cosines();
    run.j_to_response();
    run.to_cartesian();
    run.aab_to_rgb(stage.aces2->display);
}

template <bool FORWARD>
void aces2_tone(const FunctionStage& stage, Block& block) {
    Aces2Run run(*stage.aces2, block);
    run.wrap_hues();
    run.find_cosines();
    run.look_up_hues();
    run.map_tones_of_j<FORWARD>();
    run.compress_chroma<FORWARD>();
}

template <bool FORWARD>
void aces2_gamut(const FunctionStage& stage, Block& block) {
    Aces2Run run(*stage.aces2, block);
    run.wrap_hues();
    run.look_up_hues();
    run.compress_gamut<FORWARD>();
}

void aces2_tone_compress(const FunctionStage& stage, Block& block) {
    aces2_tone<true>(stage, block);
}

void aces2_tone_expand(const FunctionStage& stage, Block& block) {
    aces2_tone<false>(stage, block);
}

void aces2_gamut_compress(const FunctionStage& stage, Block& block) {
    aces2_gamut<true>(stage, block);
}

void aces2_gamut_expand(const FunctionStage& stage, Block& block) {
    aces2_gamut<false>(stage, block);
}

} // namespace HWY_NAMESPACE
} // namespace pixel
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace pixel {

HWY_EXPORT(aces2_output);
HWY_EXPORT(aces2_output_inverse);
HWY_EXPORT(aces2_rgb_to_jmh);
HWY_EXPORT(aces2_jmh_to_rgb);
HWY_EXPORT(aces2_tone_compress);
HWY_EXPORT(aces2_tone_expand);
HWY_EXPORT(aces2_gamut_compress);
HWY_EXPORT(aces2_gamut_expand);

namespace {

void run_output(const FunctionStage& stage, Block& block) {
    HWY_DYNAMIC_DISPATCH(aces2_output)(stage, block);
}
void run_output_inverse(const FunctionStage& stage, Block& block) {
    HWY_DYNAMIC_DISPATCH(aces2_output_inverse)(stage, block);
}
void run_to_jmh(const FunctionStage& stage, Block& block) {
    HWY_DYNAMIC_DISPATCH(aces2_rgb_to_jmh)(stage, block);
}
void run_from_jmh(const FunctionStage& stage, Block& block) {
    HWY_DYNAMIC_DISPATCH(aces2_jmh_to_rgb)(stage, block);
}
void run_tone_compress(const FunctionStage& stage, Block& block) {
    HWY_DYNAMIC_DISPATCH(aces2_tone_compress)(stage, block);
}
void run_tone_expand(const FunctionStage& stage, Block& block) {
    HWY_DYNAMIC_DISPATCH(aces2_tone_expand)(stage, block);
}
void run_gamut_compress(const FunctionStage& stage, Block& block) {
    HWY_DYNAMIC_DISPATCH(aces2_gamut_compress)(stage, block);
}
void run_gamut_expand(const FunctionStage& stage, Block& block) {
    HWY_DYNAMIC_DISPATCH(aces2_gamut_expand)(stage, block);
}

Chromaticities chromaticities_from(const FixedFunction& op, std::size_t first) {
    Chromaticities out{};
    std::copy_n(op.parameters.begin() + static_cast<std::ptrdiff_t>(first), out.size(), out.begin());
    return out;
}

using Run = void (*)(const FunctionStage& stage, Block& block);

FunctionStage make_stage(const FixedFunction& op, Run forward, Run inverse,
                         std::shared_ptr<const Aces2> aces2) {
    FunctionStage stage{op.direction == Direction::Forward ? forward : inverse, {}};
    stage.aces2 = std::move(aces2);
    return stage;
}

} // namespace

FunctionStage compile_aces2_output(const FixedFunction& op) {
    return make_stage(op, run_output, run_output_inverse,
                      share_aces2_gamut(op.parameters[0], chromaticities_from(op, 1)));
}

FunctionStage compile_aces2_appearance(const FixedFunction& op) {
    return make_stage(op, run_to_jmh, run_from_jmh, make_aces2_appearance(chromaticities_from(op, 0)));
}

FunctionStage compile_aces2_tone(const FixedFunction& op) {
    return make_stage(op, run_tone_compress, run_tone_expand, share_aces2_tone(op.parameters[0]));
}

FunctionStage compile_aces2_gamut(const FixedFunction& op) {
    return make_stage(op, run_gamut_compress, run_gamut_expand,
                      share_aces2_gamut(op.parameters[0], chromaticities_from(op, 1)));
}

} // namespace pixel
#endif
