#include "adversarial.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <random>

namespace pixel_test {

namespace {

constexpr std::size_t MIXED = 600, USUAL = 900;

Pixel gray(float v) {
    return {v, v, v, 1.0f};
}

/// Numbers the floats in their order: neighbors have neighboring numbers.
std::int32_t to_order(float v) {
    std::int32_t bits = 0;
    std::memcpy(&bits, &v, sizeof bits);
    return bits >= 0 ? bits : INT32_MIN - bits;
}

float from_order(std::int32_t order) {
    const std::int32_t bits = order >= 0 ? order : INT32_MIN - order;
    float v = 0;
    std::memcpy(&v, &bits, sizeof v);
    return v;
}

/// Thirds: within [0, 1]; over 20 stops of light; around black.
std::vector<Pixel> usual_pixels(unsigned seed) {
    std::mt19937 generator(seed);
    std::uniform_real_distribution<float> unit(0.0f, 1.0f), stops(-12.0f, 8.0f), dark(-0.02f, 0.02f);
    std::vector<Pixel> pixels(USUAL);
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        for (std::size_t c = 0; c < 3; ++c) {
            pixels[i][c] = i % 3 == 0   ? unit(generator)
                           : i % 3 == 1 ? std::exp2(stops(generator))
                                        : dark(generator);
        }
        pixels[i][3] = i % 2 == 0 ? 1.0f : unit(generator);
    }
    return pixels;
}

std::vector<float> ends_of(const pixel::Lut1D& table, std::size_t channel) {
    constexpr std::size_t LAST_POSITIVE = 0x7BFF, LAST_NEGATIVE = 0xFBFF;
    const bool half = table.domain == pixel::InputDomain::Half;
    if (table.direction == pixel::Direction::Forward) {
        return half ? std::vector<float>{-65504.0f, -0x1p-14f, 0.0f, 0x1p-14f, 65504.0f}
                    : std::vector<float>{0.0f, 1.0f};
    }
    const float* curve = table.values->data() + (table.channels == 1 ? 0 : channel * table.length);
    return half ? std::vector<float>{curve[LAST_NEGATIVE], curve[0], curve[LAST_POSITIVE]}
                : std::vector<float>{curve[0], curve[table.length - 1]};
}

std::vector<float> ends_of(const pixel::Op& op, std::size_t channel) {
    if (const auto* table = std::get_if<pixel::Lut1D>(&op)) {
        return ends_of(*table, channel);
    }
    return std::holds_alternative<pixel::Lut3D>(op) ? std::vector<float>{0.0f, 1.0f} : std::vector<float>{};
}

/// Adds the neighboring grays between which a channel of the program's result passes `end`.
void add_crossings(const pixel::Program& program, std::size_t channel, float end, std::vector<Pixel>& out) {
    constexpr std::int64_t GRID = 400;
    const auto above = [&](std::int32_t order) {
        Pixel pixel = gray(from_order(order));
        program.apply_pixel(pixel.data());
        return pixel[channel] > end;
    };
    const std::int64_t from = to_order(-1e5f), to = to_order(1e5f);
    auto low = static_cast<std::int32_t>(from);
    for (std::int64_t i = 1; i <= GRID; ++i) {
        const auto high = static_cast<std::int32_t>(from + (to - from) * i / GRID);
        if (above(low) != above(high)) {
            std::int32_t below = low, beyond = high;
            while (static_cast<std::int64_t>(beyond) - below > 1) {
                const auto middle =
                    static_cast<std::int32_t>((static_cast<std::int64_t>(below) + beyond) / 2);
                (above(middle) == above(low) ? below : beyond) = middle;
            }
            for (const std::int32_t order : {below - 1, below, beyond, beyond + 1}) {
                out.push_back(gray(from_order(order)));
            }
        }
        low = high;
    }
}

} // namespace

std::vector<Pixel> grays_at_table_ends(const pixel::OpChain& chain) {
    std::vector<Pixel> out;
    for (std::size_t i = 0; i < chain.size(); ++i) {
        if (ends_of(chain[i], 0).empty()) {
            continue;
        }
        const pixel::Program before({chain.begin(), chain.begin() + static_cast<std::ptrdiff_t>(i)});
        for (std::size_t channel = 0; channel < 3; ++channel) {
            for (const float end : ends_of(chain[i], channel)) {
                out.push_back(gray(end));
                add_crossings(before, channel, end, out);
            }
        }
    }
    return out;
}

std::vector<Pixel> adversarial_pixels(const pixel::OpChain& chain) {
    std::vector<Pixel> pixels = mixed_pixels(MIXED, 97);
    for (const auto& more : {usual_pixels(11), grays_at_table_ends(chain)}) {
        pixels.insert(pixels.end(), more.begin(), more.end());
    }
    for (const float v : awkward_values()) {
        pixels.push_back(gray(v));
    }
    for (const float v : ramp(201, -0.25f, 1.25f)) {
        pixels.push_back(gray(v));
    }
    return pixels;
}

} // namespace pixel_test
