#pragma once

#include <cstddef>
#include <string>

#include "pixel/ops.h"
#include "pixel/stage.h"

namespace pixel {

/// What a fixed function is called, and what makes its stage of parameters whose number is right.
struct FixedFunctionKind {
    FixedStyle style;
    const char* words;
    std::size_t parameter_count;
    FunctionStage (*compile)(const FixedFunction& op);
};

/// The row of the table of fixed functions for a style.
const FixedFunctionKind& kind_of(FixedStyle style);

/// Throws std::invalid_argument for the wrong number of parameters.
FunctionStage compile_fixed_function(const FixedFunction& op);

FunctionStage compile_red_modifier(const FixedFunction& op);
FunctionStage compile_glow(const FixedFunction& op);
FunctionStage compile_dark_to_dim(const FixedFunction& op);
FunctionStage compile_gamut_compression(const FixedFunction& op);
FunctionStage compile_surround(const FixedFunction& op);
FunctionStage compile_pq(const FixedFunction& op);
FunctionStage compile_gamma_log(const FixedFunction& op);
FunctionStage compile_double_log(const FixedFunction& op);
FunctionStage compile_hsv(const FixedFunction& op);
FunctionStage compile_xyy(const FixedFunction& op);
FunctionStage compile_uvy(const FixedFunction& op);
FunctionStage compile_luv(const FixedFunction& op);

} // namespace pixel
