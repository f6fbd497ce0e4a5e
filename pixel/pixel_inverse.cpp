#include <cstdint>
#include <cstring>

#include "pixel/inverse_index.h"
#include "pixel/kernels.h"

/// Inverse 1D LUTs for single pixels. Each channel searches a separate curve, which is done without vectors,
/// with the same operations as the lanes of the kernels for blocks.
namespace pixel {

namespace {

/// A position between two entries: the lower one's index, and the part of the way to the next.
struct Place {
    float whole, part;
};

std::int32_t bits_of(float v) {
    std::int32_t bits;
    std::memcpy(&bits, &v, sizeof bits);
    return bits;
}

Place locate(const InverseCurve& curve, float value) {
    const float low = curve.sorted.front(), high = curve.sorted.back();
    const float in = value * curve.sign;
    const float raised = in > low ? in : low;
    const float clamped = raised < high ? raised : high;
    const float x = in != in ? in : clamped; // NaN is handed on
    const auto key = static_cast<std::uint32_t>(bits_of(clamped + curve.bias));
    const auto bucket = static_cast<std::int32_t>(key - curve.base) >> curve.shift;
    const Knot& knot = curve.knots[static_cast<std::size_t>(bucket)];
    if (curve.crowded && knot.index != knot.index) {
        const Position found = search_position(curve, x);
        return {static_cast<float>(found.index), found.part};
    }
    const bool after = x > knot.at;
    const float from = after ? knot.at : knot.below, to = after ? knot.above : knot.at;
    return {after ? knot.index : knot.index - 1.0f, (x - from) / (to - from)};
}

void inverse_table_pixel(const void* stage, float* rgba) {
    const auto& s = *static_cast<const InverseTableStage*>(stage);
    for (std::size_t c = 0; c < 3; ++c) {
        const Place place = locate(s.curve[static_cast<std::size_t>(s.curve_of[c])], rgba[c]);
        const float out = (place.whole + place.part) * s.reciprocal;
        rgba[c] = out * s.after.scale[c] + s.after.offset[c];
    }
}

/// The number that the low 15 bits of a 16-bit float stand for.
float half_magnitude(float bits) {
    const std::int32_t shifted = static_cast<std::int32_t>(bits) << 13;
    float v;
    std::memcpy(&v, &shifted, sizeof v);
    return v * 0x1p112f;
}

/// Of the entries of positive and of negative numbers. Looked up, so that the compiler multiplies by it as it
/// is done for blocks: it would turn the sign of NaN otherwise.
constexpr float SIGNS[2] = {1.0f, -1.0f};

void inverse_half_pixel(const void* stage, float* rgba) {
    const auto& s = *static_cast<const InverseHalfStage*>(stage);
    for (std::size_t c = 0; c < 3; ++c) {
        const InverseHalfCurve& curve = s.curve[static_cast<std::size_t>(s.curve_of[c])];
        const bool negative = (rgba[c] >= curve.middle) != curve.rising;
        const Place place = locate(negative ? curve.negative : curve.positive, rgba[c]);
        const float low = half_magnitude(place.whole > 0.0f ? place.whole : 0.0f);
        const float high = half_magnitude(place.whole + 1.0f);
        rgba[c] = (low + place.part * (high - low)) * SIGNS[negative ? 1 : 0];
    }
}

} // namespace

PixelKernel pixel_kernel(const InverseTableStage&) {
    return inverse_table_pixel;
}

PixelKernel pixel_kernel(const InverseHalfStage&) {
    return inverse_half_pixel;
}

} // namespace pixel
