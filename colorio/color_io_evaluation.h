#pragma once

#include "colorio/color_io_export.h"
#include "host/core/core_string.h"
#include "host/core/core_vector.h"
#include "host/gmath/gmath_vec4.h"

class ColorIOConverter;

/// How conversions are evaluated: for programs that explain conversions or compare results; not needed by
/// hosts. Every operation may be called by several threads at once.
class COLORIO_API ColorIOEvaluation {
public:
    /// One operation.
    struct Step {
        CoreString operation;   ///< Described in words.
        GMathVec4<float> pixel; ///< Red, green, blue, alpha after it.
    };

    /// What converts pixels.
    enum Path {
        PATH_NONE,   ///< No operations: colors are unchanged.
        PATH_VECTOR, ///< The module's SIMD code.
        PATH_LIBRARY ///< OpenColorIO; see Explanation::reason.
    };

    /// How one conversion is evaluated.
    struct Explanation {
        CoreVector<CoreString> operations; ///< Of the conversion, as OpenColorIO lists them.
        CoreVector<Step> steps;            ///< As they are computed.
        Path path = PATH_NONE;             ///< What computes them.
        CoreString reason;                 ///< Why OpenColorIO computes them; empty for other paths.
        CoreString vector_target;          ///< Instruction set of the SIMD code; else empty.
    };

    /// How `converter` converts `pixel`, step by step. False, and `explanation` unchanged, when it is not
    /// configured, when memory is short, or when OpenColorIO throws, which is logged. A bypass has PATH_NONE.
    static bool explain(const ColorIOConverter& converter, const GMathVec4<float>& pixel,
                        Explanation& explanation);

    /// What a conversion was made of.
    struct Origin {
        CoreVector<CoreString> files; ///< Paths of its LUT and CDL files; those of an archive are within it.
        CoreString digest; ///< Of its operations and their numbers, by OpenColorIO; the same in every run.
    };

    /// Where the operations of `converter` come from; nothing for a bypass. False, and `origin` unchanged, in
    /// the cases of `explain`.
    static bool find_origin(const ColorIOConverter& converter, Origin& origin);

    /// Whether converters configured from now on may use the SIMD code (default: true). Process-wide.
    static void set_vector_code(bool enabled);
    /// The current setting.
    static bool get_vector_code();

    /// Instruction set of the SIMD code on this computer: "AVX2", "NEON". Empty without SIMD code, as with
    /// OpenColorIO 1.1. Lives as long as the module.
    static const char* get_vector_target();

    /// Version of the OpenColorIO that is loaded: "2.1.2". Lives as long as the library.
    static const char* get_library_version();
};
