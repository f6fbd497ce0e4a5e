#include "colorio/ocio/v2/pixel_bridge_tables.h"

#include <cstdint>
#include <cstring>
#include <memory>
#include <utility>
#include <vector>

namespace ocio {

namespace {

/// The library also chooses its code by the processor.
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

} // namespace ocio
