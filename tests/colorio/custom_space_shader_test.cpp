#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>

#include "colorio/color_io_converter.h"
#include "tests/colorio/custom_space_fixture.h"
#include "tests/colorio/shader_evaluator.h"

namespace {

// Allocation, as the shader's table shows it: entry i of its first row is the space's value at i / 31, halved

class AllocationOfCustomSpaces : public CustomSpaces {
protected:
    void expect_axis(const SpaceDef& record, double (*value_at)(double position)) {
        edit({record});
        ASSERT_TRUE(converter->configure("mine", "linear"));
        CoreString code;
        CoreArray<float> table;
        ASSERT_TRUE(converter->get_gpu_shader_data(code, table, ColorIOConverter::GLSL_VERSION_CORE));
        for (unsigned int i = 0; i < 32; ++i)
            EXPECT_NEAR(table[i * 3], value_at(i / 31.0) / 2, 2e-5) << i;
    }
    SpaceDef record(ocio::Allocation allocation, float first, float second, float third) {
        SpaceDef record = space_record("mine", write_lut("two.spi1d", 2));
        record.allocation = static_cast<unsigned int>(allocation);
        record.allocation_vars[0] = first;
        record.allocation_vars[1] = second;
        record.allocation_vars[2] = third;
        return record;
    }
};

TEST_F(AllocationOfCustomSpaces, IsUniformBetweenTheFirstTwoVariables) {
    expect_axis(record(ocio::ALLOCATION_UNIFORM, -1, 3, 17),
                [](double position) { return -1 + 4 * position; });
}

TEST_F(AllocationOfCustomSpaces, IsLogarithmicWithTheThirdVariableAsOffset) {
    expect_axis(record(ocio::ALLOCATION_LG2, -8, 4, 0.25),
                [](double position) { return std::exp2(-8 + 12 * position) - 0.25; });
}

TEST_F(AllocationOfCustomSpaces, OfACdlAloneIsFixed) {
    SpaceDef grade = space_record("mine", "", write_file("grade.cc", correction_text("x", "2")));
    SpaceDef target = space_record("target", write_lut("half.spi1d", 0.5));
    edit({grade, target});
    ASSERT_TRUE(converter->configure("mine", "target"));
    CoreString code;
    CoreArray<float> table;
    ASSERT_TRUE(converter->get_gpu_shader_data(code, table, ColorIOConverter::GLSL_VERSION_CORE));
    ASSERT_NE(str(code).find("log"), std::string::npos) << "logarithmic, for every record\n" << str(code);
    const float largest = std::max(table[31 * 3], table[30 * 3]);
    EXPECT_NEAR(largest, 16, 1e-3) << "2^6, halved by the correction and by the table";
    EXPECT_NEAR(table[0], std::exp2(-15) / 4, 1e-6);
}

TEST_F(CustomSpaces, OfACdlAndALutAreShownByTheShaderAsTheyAreConverted) {
    const std::string grade = write_file(
        "grade.cc",
        "<ColorCorrection id=\"x\"><SOPNode><Slope>0.8 1 1.2</Slope><Offset>0.1 0 -0.1</Offset>"
        "<Power>1 1 1</Power></SOPNode><SATNode><Saturation>0.5</Saturation></SATNode></ColorCorrection>");
    edit({space_record("flat", write_lut("one.spi1d", 1)),
          space_record("both", write_lut("two.spi1d", 2), grade)});
    ASSERT_TRUE(converter->configure("flat", "both"));
    for (auto version : {ColorIOConverter::GLSL_VERSION_LEGACY, ColorIOConverter::GLSL_VERSION_CORE}) {
        CoreString code;
        CoreArray<float> table;
        ASSERT_TRUE(converter->get_gpu_shader_data(code, table, version));
        ShaderEvaluator shader(str(code), "OCIODisplay", {table.begin(), table.end()}, 32);
        for (const ShaderEvaluator::Pixel& pixel :
             {ShaderEvaluator::Pixel{0.18, 0.5, 0.75, 1}, {0.9, 0.1, 0.3, 0.5}, {0, 0, 0, 1}, {1, 1, 1, 0}}) {
            const std::vector<float> converted = convert(
                static_cast<float>(pixel[0]), static_cast<float>(pixel[1]), static_cast<float>(pixel[2]));
            const ShaderEvaluator::Pixel shown = shader.run(pixel);
            // Every step is a straight line, so the LUT adds no error.
            for (unsigned int i = 0; i < 3; ++i)
                EXPECT_NEAR(shown[i], converted[i], 2e-4) << "channel " << i << "\n" << str(code);
        }
    }
}

} // namespace
