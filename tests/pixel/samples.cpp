#include "samples.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>

namespace pixel_test {

namespace {

std::int64_t ordered_bits(float v) {
    std::int32_t bits;
    std::memcpy(&bits, &v, sizeof bits);
    return bits >= 0 ? bits : -static_cast<std::int64_t>(bits & 0x7FFFFFFF);
}

} // namespace

const std::vector<float>& awkward_values() {
    constexpr float INF = std::numeric_limits<float>::infinity();
    constexpr float NOT_A_NUMBER = std::numeric_limits<float>::quiet_NaN();
    static const std::vector<float> values{
        0.0f,     -0.0f,           1.0f,           -1.0f,   1e-45f,  -1e-45f,      1e-40f,
        -1e-40f,  1.17549435e-38f, 1e-30f,         -1e-30f, 2.9e-8f, 6e-8f,        6e-5f,
        0.5f,     0.99999994f,     1.00000012f,    -0.125f, 1.125f,  65504.0f,     -65504.0f,
        65519.0f, 65520.0f,        65536.0f,       1e6f,    1e30f,   -1e30f,       3.4e38f,
        -3.4e38f, 3.4028235e38f,   -3.4028235e38f, INF,     -INF,    NOT_A_NUMBER, -NOT_A_NUMBER,
    };
    return values;
}

std::vector<float> random_values(std::size_t count, unsigned seed) {
    std::mt19937 generator(seed);
    std::uniform_real_distribution<float> usual(-0.3f, 1.4f), exponent(-38.0f, 38.0f);
    std::vector<float> values(count);
    for (std::size_t i = 0; i < count; ++i) {
        const float wide = std::pow(10.0f, exponent(generator));
        values[i] = i % 2 == 0 ? usual(generator) : (i % 4 == 1 ? wide : -wide);
    }
    return values;
}

std::vector<Pixel> mixed_pixels(std::size_t count, unsigned seed) {
    std::vector<float> values = random_values(4 * count - std::min(4 * count, awkward_values().size()), seed);
    values.insert(values.end(), awkward_values().begin(), awkward_values().end());
    std::vector<Pixel> pixels(count);
    std::mt19937 generator(seed);
    std::shuffle(values.begin(), values.end(), generator);
    for (std::size_t i = 0; i < count; ++i) {
        std::copy_n(values.begin() + static_cast<std::ptrdiff_t>(4 * i), 4, pixels[i].begin());
    }
    return pixels;
}

std::vector<float> ramp(std::size_t count, float from, float to) {
    std::vector<float> values(count);
    for (std::size_t i = 0; i < count; ++i) {
        values[i] = from + (to - from) * static_cast<float>(i) / static_cast<float>(count - 1);
    }
    return values;
}

bool within_units(float a, float b, int units) {
    if (std::isnan(a) || std::isnan(b)) {
        return std::isnan(a) && std::isnan(b);
    }
    return std::abs(ordered_bits(a) - ordered_bits(b)) <= units;
}

bool is_near(float actual, double expected) {
    if (std::isnan(expected) || std::isnan(actual)) {
        return std::isnan(expected) && std::isnan(actual);
    }
    if (std::fabs(expected) > static_cast<double>(std::numeric_limits<float>::max())) {
        return std::isinf(actual) && (actual > 0) == (expected > 0);
    }
    const double error = std::fabs(static_cast<double>(actual) - expected);
    return error <= 1e-7 || error <= 1e-6 * std::fabs(expected);
}

} // namespace pixel_test
