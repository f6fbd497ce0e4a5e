#pragma once

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "colorio/color_io_converter.h"
#include "tests/colorio/converter_fixture.h"
#include "tests/colorio/shader_evaluator.h"

using GlslVersion = ColorIOConverter::GlslVersion;
inline constexpr GlslVersion LEGACY = ColorIOConverter::GLSL_VERSION_LEGACY;
inline constexpr GlslVersion CORE = ColorIOConverter::GLSL_VERSION_CORE;

inline constexpr unsigned int EDGE = 32;
inline constexpr unsigned int FLOAT_COUNT = 98304;

/// The host's data: shader text and LUT of the converter's conversion.
class HostShader : public ConverterTest {
protected:
    void generate(GlslVersion version) {
        CoreString generated;
        CoreArray<float> table;
        ASSERT_TRUE(converter->get_gpu_shader_data(generated, table, version));
        code = str(generated);
        ASSERT_EQ(table.get_count(), FLOAT_COUNT);
        lut.assign(table.begin(), table.end());
    }
    ShaderEvaluator evaluator() const { return ShaderEvaluator(code, "OCIODisplay", lut, EDGE); }

    /// Runs text and table, and the converter itself, on the same pixels: equal within `tolerance`.
    void expect_same_as_pixels(const std::vector<ShaderEvaluator::Pixel>& pixels, double tolerance) {
        ShaderEvaluator shader = evaluator();
        for (const ShaderEvaluator::Pixel& pixel : pixels) {
            GMathVec4<float> converted(static_cast<float>(pixel[0]), static_cast<float>(pixel[1]),
                                       static_cast<float>(pixel[2]), static_cast<float>(pixel[3]));
            ASSERT_TRUE(converter->convert_pixel(converted));
            const ShaderEvaluator::Pixel shown = shader.run(pixel);
            for (unsigned int i = 0; i < 4; ++i)
                EXPECT_NEAR(shown[i], converted[i], tolerance)
                    << "channel " << i << " of " << pixel[i] << "\n"
                    << code;
        }
    }

    std::string code;
    std::vector<float> lut;
};
