#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include "pixel/chain.h"

namespace pixel_test {

using Pixel = std::array<float, 4>;

/// Values that break careless code: zeros of both signs, denormals, the ends of [0, 1] and their neighbors,
/// the limits of 16-bit floats, 1e30, the largest float, infinities, NaN of both signs.
const std::vector<float>& awkward_values();

/// `count` values: half of them in [-0.3, 1.4], the rest spread over all magnitudes and signs.
std::vector<float> random_values(std::size_t count, unsigned seed);

/// Pixels with awkward and random values in every channel, in combinations fixed by the seed.
std::vector<Pixel> mixed_pixels(std::size_t count, unsigned seed);

/// `count` evenly spaced values from `from` to `to`.
std::vector<float> ramp(std::size_t count, float from, float to);

/// One operation made ready once, for many pixels.
class Single {
public:
    explicit Single(const pixel::Op& op) : program_({op}) {}

    Pixel operator()(Pixel in) const {
        program_.apply_pixel(in.data());
        return in;
    }
    /// The red channel of an opaque gray pixel.
    float operator()(float gray) const { return (*this)(Pixel{gray, gray, gray, 1.0f})[0]; }

private:
    pixel::Program program_;
};

inline Pixel apply_one(const pixel::Op& op, const Pixel& in) {
    return Single(op)(in);
}
inline float apply_gray(const pixel::Op& op, float gray) {
    return Single(op)(gray);
}

/// True when the values differ by no more than `units` in the last place, or are both NaN.
bool within_units(float a, float b, int units);

/// Near a double: within 1e-6 of its magnitude, or 1e-7. Infinity and NaN match themselves only.
bool is_near(float actual, double expected);

} // namespace pixel_test
