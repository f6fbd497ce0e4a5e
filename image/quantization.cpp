#include "image/quantization.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace image {

namespace {

/// Noise has so many levels. More would come so near to half a code that floats round to the next one.
constexpr int NOISE_BITS = 10;

using Noise = std::array<float, 3>;

/// From -0.5 to 0.5, both excluded, in even steps. The hash is PCG3D: M. Jarzynski and M. Olano, Hash
/// Functions for GPU Rendering, Journal of Computer Graphics Techniques 9 (3), 2020.
Noise get_noise(std::uint32_t x, std::uint32_t y) {
    std::uint32_t v[3] = {x, y, 0};
    for (std::uint32_t& word : v)
        word = word * 1664525u + 1013904223u;
    for (int round = 0; round < 2; ++round) {
        v[0] += v[1] * v[2];
        v[1] += v[2] * v[0];
        v[2] += v[0] * v[1];
        if (round == 0)
            for (std::uint32_t& word : v)
                word ^= word >> 16;
    }
    Noise noise;
    for (std::size_t i = 0; i < noise.size(); ++i)
        noise[i] = (static_cast<float>(v[i] >> (32 - NOISE_BITS)) + 0.5f) / (1 << NOISE_BITS) - 0.5f;
    return noise;
}

/// `noise` is more than -0.5, so that the conversion to an integer rounds down.
float round_to_code(float value, float codes, float noise) {
    const float clamped = value > 0.0f ? std::min(value, 1.0f) : 0.0f; // NaN fails the comparison
    return std::min(static_cast<float>(static_cast<int>(clamped * codes + noise + 0.5f)), codes) / codes;
}

void dither(float codes, float* rgba, unsigned int width, int left, int y) {
    for (unsigned int x = 0; x < width; ++x, rgba += 4) {
        const Noise noise = get_noise(static_cast<std::uint32_t>(left) + x, static_cast<std::uint32_t>(y));
        for (std::size_t i = 0; i < noise.size(); ++i)
            rgba[i] = round_to_code(rgba[i], codes, noise[i]);
        rgba[3] = round_to_code(rgba[3], codes, 0);
    }
}

} // namespace

void quantize(const Quantization& quantization, float* rgba, unsigned int width, unsigned int height,
              int left, int top) {
    const auto codes = static_cast<float>(quantization.codes);
    const std::size_t row_floats = std::size_t{width} * 4;
    if (quantization.dithers)
        for (unsigned int y = 0; y < height; ++y)
            dither(codes, rgba + y * row_floats, width, left, top + static_cast<int>(y));
    else
        for (std::size_t i = 0; i < row_floats * height; ++i)
            rgba[i] = round_to_code(rgba[i], codes, 0);
}

} // namespace image
