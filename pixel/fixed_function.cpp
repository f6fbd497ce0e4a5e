#include "pixel/fixed_function.h"

#include <stdexcept>

namespace pixel {

namespace {

constexpr FixedFunctionKind KINDS[] = {
    {FixedStyle::AcesRedModifier03, "ACES 0.3 red modifier", 0, compile_red_modifier},
    {FixedStyle::AcesRedModifier10, "ACES 1.0 red modifier", 0, compile_red_modifier},
    {FixedStyle::AcesGlow03, "ACES 0.3 glow", 0, compile_glow},
    {FixedStyle::AcesGlow10, "ACES 1.0 glow", 0, compile_glow},
    {FixedStyle::AcesDarkToDim10, "ACES 1.0 dark to dim surround", 0, compile_dark_to_dim},
    {FixedStyle::AcesGamutCompression13, "ACES 1.3 gamut compression", 7, compile_gamut_compression},
    {FixedStyle::Rec2100Surround, "Rec. 2100 surround", 1, compile_surround},
    {FixedStyle::Rec2100SurroundMirrored, "Rec. 2100 surround, negatives mirrored", 1, compile_surround},
    {FixedStyle::AcesOutput20, "ACES 2.0 output transform", 9, compile_aces2_output},
    {FixedStyle::AcesRgbToJmh20, "ACES 2.0 RGB to JMh", 8, compile_aces2_appearance},
    {FixedStyle::AcesToneCompression20, "ACES 2.0 tone scale and chroma compression", 1, compile_aces2_tone},
    {FixedStyle::AcesGamutCompression20, "ACES 2.0 gamut compression", 9, compile_aces2_gamut},
    {FixedStyle::LinearToPq, "linear to PQ", 0, compile_pq},
    {FixedStyle::LinearToGammaLog, "linear to gamma and logarithm", 10, compile_gamma_log},
    {FixedStyle::LinearToDoubleLog, "linear to two logarithms", 13, compile_double_log},
    {FixedStyle::RgbToHsv, "RGB to HSV", 0, compile_hsv},
    {FixedStyle::XyzToXyy, "XYZ to xyY", 0, compile_xyy},
    {FixedStyle::XyzToUvy, "XYZ to u'v'Y", 0, compile_uvy},
    {FixedStyle::XyzToLuv, "XYZ to L*u*v*", 0, compile_luv},
};

} // namespace

const FixedFunctionKind& kind_of(FixedStyle style) {
    for (const FixedFunctionKind& kind : KINDS) {
        if (kind.style == style) {
            return kind;
        }
    }
    throw std::invalid_argument("fixed function: the style is not in the table");
}

FunctionStage compile_fixed_function(const FixedFunction& op) {
    const FixedFunctionKind& kind = kind_of(op.style);
    if (op.parameters.size() != kind.parameter_count) {
        throw std::invalid_argument(std::string(kind.words) + ": the number of parameters is not " +
                                    std::to_string(kind.parameter_count));
    }
    return kind.compile(op);
}

} // namespace pixel
