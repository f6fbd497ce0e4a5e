#pragma once

#include "colorio/color_io_export.h"
#include "host/core/core_string.h"
#include "host/core/core_vector.h"
#include "host/gmath/gmath_vec4.h"

class ColorIOConverter;

/// How conversions are evaluated: for programs that show it, and for comparisons. Hosts need none of it.
class COLORIO_API ColorIOEvaluation {
public:
    /// An operation in words, and the pixel after it.
    struct Step {
        CoreString operation;
        GMathVec4<float> pixel;
    };

    /// What converts pixels.
    enum Path {
        PATH_NONE,   ///< Nothing: colors stay as they are.
        PATH_VECTOR, ///< The module's SIMD code.
        PATH_LIBRARY ///< OpenColorIO, for the reason given.
    };

    struct Explanation {
        CoreVector<CoreString> operations; ///< As the configuration gives them.
        CoreVector<Step> steps;            ///< As they are carried out.
        Path path = PATH_NONE;
        CoreString reason;        ///< Why the library; else empty.
        CoreString vector_target; ///< Instruction set of the SIMD code; else empty.
    };

    /// How `converter` converts, and what becomes of `pixel` on the way. False, and nothing touched, unless
    /// it is configured and memory suffices; a bypass has PATH_NONE. What OpenColorIO throws is logged.
    static bool explain(const ColorIOConverter& converter, const GMathVec4<float>& pixel,
                        Explanation& explanation);

    /// Whether converters configured from now on may use the SIMD code (the default).
    static void set_vector_code(bool enabled);
    static bool get_vector_code();
};
