#include "tests/gpu/cpu_color.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "colorio/color_io_evaluation.h"
#include "host/gmath/gmath_vec4.h"

namespace {

/// How many roundings of a float a conversion is taken to make.
constexpr float ROUNDINGS = 8;

} // namespace

Lattice::Rgb convert_on_cpu(const ColorIOConverter& converter, const float* rgba) {
    GMathVec4<float> pixel(rgba[0], rgba[1], rgba[2], rgba[3]);
    EXPECT_TRUE(converter.convert_pixel(pixel));
    return {pixel[0], pixel[1], pixel[2]};
}

bool overflows(const ColorIOConverter& converter, const float* rgba) {
    ColorIOEvaluation::Explanation explanation;
    EXPECT_TRUE(ColorIOEvaluation::explain(converter, {rgba[0], rgba[1], rgba[2], rgba[3]}, explanation));
    for (const ColorIOEvaluation::Step& step : explanation.steps)
        for (unsigned int channel = 0; channel < 3; ++channel)
            if (!std::isfinite(step.pixel[channel]))
                return true;
    return false;
}

Lattice::Rgb get_unsteadiness(const ColorIOConverter& converter, const float* rgba,
                              const Lattice::Rgb& converted) {
    Lattice::Rgb moved = {};
    for (size_t channel = 0; channel < 3; ++channel) {
        Lattice::Rgb farthest = {};
        for (const float direction : {1.0f, -1.0f}) {
            float shifted[] = {rgba[0], rgba[1], rgba[2], rgba[3]};
            shifted[channel] *= 1 + direction * ROUNDINGS * std::numeric_limits<float>::epsilon();
            const Lattice::Rgb result = convert_on_cpu(converter, shifted);
            for (size_t i = 0; i < 3; ++i)
                farthest[i] = std::max(farthest[i], std::abs(result[i] - converted[i]));
        }
        for (size_t i = 0; i < 3; ++i)
            moved[i] += farthest[i];
    }
    return moved;
}
