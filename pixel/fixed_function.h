#pragma once

#include <cstddef>
#include <string>

#include "pixel/ops.h"
#include "pixel/stage.h"

namespace pixel {

/// A kind of fixed function.
struct FixedFunctionKind {
    FixedStyle style;
    const char* words;                                 ///< its name for users
    std::size_t parameter_count;                       ///< required
    FunctionStage (*compile)(const FixedFunction& op); ///< needs that count of parameters
};

/// The kind of a style.
const FixedFunctionKind& kind_of(FixedStyle style);

/// Compiles any of them. Throws std::invalid_argument for the wrong number of parameters.
FunctionStage compile_fixed_function(const FixedFunction& op);

// The `compile` functions of the kinds; each file states the meaning of the stage's constants.

FunctionStage compile_red_modifier(const FixedFunction& op);
FunctionStage compile_glow(const FixedFunction& op);
FunctionStage compile_dark_to_dim(const FixedFunction& op);
FunctionStage compile_gamut_compression(const FixedFunction& op);
FunctionStage compile_surround(const FixedFunction& op);
FunctionStage compile_pq(const FixedFunction& op);
FunctionStage compile_gamma_log(const FixedFunction& op);
FunctionStage compile_double_log(const FixedFunction& op);
FunctionStage compile_aces2_output(const FixedFunction& op);
FunctionStage compile_aces2_appearance(const FixedFunction& op);
FunctionStage compile_aces2_tone(const FixedFunction& op);
FunctionStage compile_aces2_gamut(const FixedFunction& op);
FunctionStage compile_hsv(const FixedFunction& op);
FunctionStage compile_xyy(const FixedFunction& op);
FunctionStage compile_uvy(const FixedFunction& op);
FunctionStage compile_luv(const FixedFunction& op);

} // namespace pixel
