#include "colorio/ocio/v2/pixel_bridge_tables.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <memory>
#include <utility>
#include <vector>

#include "colorio/ocio/v2/pixel_bridge_words.h"

namespace ocio {

namespace {

/// OpenColorIO also chooses its code by the processor.
bool has_multiply_add() {
#if defined(__x86_64__)
    return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma");
#else
    return false;
#endif
}

std::uint32_t bits_of(float v) {
    std::uint32_t bits = 0;
    std::memcpy(&bits, &v, sizeof bits);
    return bits;
}

/// Red's curve, or red's, green's and blue's if they differ; most LUTs have one for all.
std::vector<float> read_curves(const library::Lut1DTransform& transform, bool& shared) {
    const std::size_t length = transform.getLength();
    std::vector<float> values(length);
    shared = true;
    for (std::size_t i = 0; i < length && shared; ++i) {
        float green = 0, blue = 0;
        transform.getValue(i, values[i], green, blue);
        shared = bits_of(values[i]) == bits_of(green) && bits_of(values[i]) == bits_of(blue);
    }
    if (shared)
        return values;
    values.resize(3 * length);
    for (std::size_t i = 0; i < length; ++i)
        transform.getValue(i, values[i], values[length + i], values[2 * length + i]);
    return values;
}

/// Entries for the infinities and NaN of the half domain are not used in an inverse.
bool takes_part_in_inverse(const pixel::Lut1D& table, std::size_t entry) {
    return table.domain == pixel::InputDomain::Unit || (entry & 0x7FFF) < 0x7C00;
}

bool is_finite(const pixel::Table& entries) {
    return std::all_of(entries->begin(), entries->end(), [](float v) { return std::isfinite(v); });
}

bool has_finite_inverse(const pixel::Lut1D& table) {
    for (std::size_t i = 0; i < table.values->size(); ++i)
        if (takes_part_in_inverse(table, i % table.length) && !std::isfinite((*table.values)[i]))
            return false;
    return true;
}

/// OpenColorIO searches the values of all channels on the side of the 16-bit floats where red's are, so it
/// inverts curves of different directions in a way that pixel/ does not reproduce.
bool runs_as_red(const pixel::Lut1D& table, std::size_t channel) {
    constexpr std::size_t LAST_FINITE = 0x7BFF;
    const auto rises = [&](std::size_t c) {
        const float* curve = table.values->data() + c * table.length;
        return curve[0] < curve[LAST_FINITE];
    };
    return rises(channel) == rises(0);
}

void check_inverse(const pixel::Lut1D& table) {
    if (!has_finite_inverse(table))
        throw NotKnown{"the inverse of a 1D LUT with NaN or infinity is not supported by the SIMD code"};
    if (table.domain == pixel::InputDomain::Half && table.channels == 3 &&
        !(runs_as_red(table, 1) && runs_as_red(table, 2)))
        throw NotKnown{"the inverse of a 1D LUT over the 16-bit floats with curves of different directions "
                       "is not supported by the SIMD code"};
}

} // namespace

std::optional<pixel::TableArithmetic> table_arithmetic() {
    if (OCIO_VERSION_MINOR < 5)
        return pixel::TableArithmetic::Stepwise;
    return has_multiply_add() ? std::optional(pixel::TableArithmetic::Fused) : std::nullopt;
}

pixel::Lut1D read_table(const library::Lut1DTransform& transform, pixel::Direction direction) {
    const std::size_t length = transform.getLength();
    bool shared = false;
    std::vector<float> values = read_curves(transform, shared);
    pixel::Lut1D table{};
    table.domain = transform.getInputHalfDomain() ? pixel::InputDomain::Half : pixel::InputDomain::Unit;
    table.length = length;
    table.channels = shared ? 1 : 3;
    table.values = std::make_shared<const std::vector<float>>(std::move(values));
    table.direction = direction;
    return table;
}

pixel::Lut3D read_cube(const library::Lut3DTransform& transform) {
    const std::size_t edge = transform.getGridSize();
    std::vector<float> values(3 * edge * edge * edge);
    float* to = values.data();
    for (std::size_t r = 0; r < edge; ++r)
        for (std::size_t g = 0; g < edge; ++g)
            for (std::size_t b = 0; b < edge; ++b, to += 3)
                transform.getValue(r, g, b, to[0], to[1], to[2]);
    const library::Interpolation interpolation = transform.getInterpolation();
    const bool tetrahedral =
        interpolation == library::INTERP_TETRAHEDRAL || interpolation == library::INTERP_BEST;
    return {edge, pixel::CubeOrder::BlueFastest,
            tetrahedral ? pixel::CubeInterpolation::Tetrahedral : pixel::CubeInterpolation::Trilinear,
            std::make_shared<const std::vector<float>>(std::move(values))};
}

namespace {

pixel::TableArithmetic known_arithmetic() {
    const std::optional<pixel::TableArithmetic> arithmetic = table_arithmetic();
    if (!arithmetic)
        throw NotKnown{"the interpolation of this version of OpenColorIO on this processor is not supported "
                       "by the SIMD code"};
    return *arithmetic;
}

} // namespace

pixel::Op translate_op(const library::Lut1DTransform& t) {
    pixel::Lut1D op = read_table(t, direction_of(t));
    op.restores_hue = t.getHueAdjust() != library::HUE_NONE;
    if (op.direction == pixel::Direction::Inverse)
        check_inverse(op);
    else if (op.domain == pixel::InputDomain::Unit)
        op.arithmetic = known_arithmetic();
    return op;
}

pixel::Op translate_op(const library::Lut3DTransform& t) {
    pixel::Lut3D op = read_cube(t);
    op.direction = direction_of(t);
    if (op.direction == pixel::Direction::Forward)
        op.arithmetic = known_arithmetic();
    else if (!is_finite(op.rgb))
        throw NotKnown{"the inverse of a 3D LUT with NaN or infinity is not supported by the SIMD code"};
    return op;
}

} // namespace ocio
