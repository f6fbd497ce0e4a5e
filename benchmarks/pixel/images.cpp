#include "benchmarks/pixel/images.h"

#include <algorithm>
#include <cmath>
#include <random>

namespace pixel_bench {

namespace {

std::vector<float> make_noise() {
    std::mt19937 random(1);
    std::uniform_real_distribution<float> value(0.0f, 1.0f);
    std::vector<float> pixels(4 * PIXELS);
    std::generate(pixels.begin(), pixels.end(), [&] { return value(random); });
    return pixels;
}

std::vector<float> make_waves() {
    std::vector<float> pixels(4 * PIXELS);
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        const auto c = static_cast<float>(i % 4);
        const auto x = static_cast<float>(i / 4 % WIDTH), y = static_cast<float>(i / 4 / WIDTH);
        const float wave = 0.5f + 0.45f * std::sin(0.002f * x + 0.003f * y * c + c);
        pixels[i] = std::clamp(wave + 0.02f * (noise()[i] - 0.5f), 0.0f, 1.0f);
    }
    return pixels;
}

std::vector<float> as_planes(const std::vector<float>& packed) {
    std::vector<float> planes(packed.size());
    for (std::size_t i = 0; i < packed.size(); ++i)
        planes[i % 4 * PIXELS + i / 4] = packed[i];
    return planes;
}

} // namespace

const std::vector<float>& noise() {
    static const std::vector<float> pixels = make_noise();
    return pixels;
}

const std::vector<float>& waves() {
    static const std::vector<float> pixels = make_waves();
    return pixels;
}

const std::vector<float>& planar_noise() {
    static const std::vector<float> pixels = as_planes(noise());
    return pixels;
}

const std::vector<float>& planar_waves() {
    static const std::vector<float> pixels = as_planes(waves());
    return pixels;
}

} // namespace pixel_bench
