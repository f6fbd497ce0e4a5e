#include "gl/gl_evaluator.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "gl/gl_error.h"

namespace {

using gl::GlError;
using gl::GlEvaluator;
using gl::GlProfile;
using testing::ElementsAre;
using testing::FloatEq;
using testing::HasSubstr;

/// The body as a host's function.
std::string function(const std::string& body) {
    return "vec4 OCIODisplay(in vec4 inPixel, const sampler3D lut3d) {\n" + body + "\n}\n";
}

class ShaderRun : public testing::TestWithParam<gl::GlProfile> {
protected:
    std::string texture() const { return GetParam() == gl::GlProfile::CORE ? "texture" : "texture3D"; }

    gl::GlEvaluator evaluator{GetParam()};
};

TEST_P(ShaderRun, KeepsEveryBitOfAFloat) {
    evaluator.load(function("return inPixel;"), std::vector<float>(24).data(), 2);
    const std::vector<float> pixels = {0.1f, -7.25f, 65504, 1e-6f, 3e38f, 0.333333343f, 1, 0};
    EXPECT_EQ(evaluator.run(pixels), pixels);
}

TEST_P(ShaderRun, RunsManyPixelsInTheirOrder) {
    evaluator.load(function("return inPixel * vec4(2.0, 4.0, 8.0, 1.0);"), std::vector<float>(24).data(), 2);
    std::vector<float> pixels, expected;
    for (unsigned int i = 0; i < 3 * 1024 + 17; ++i) {
        const float value = static_cast<float>(i);
        pixels.insert(pixels.end(), {value, value + 1, value + 2, 0.5f});
        expected.insert(expected.end(), {2 * value, 4 * (value + 1), 8 * (value + 2), 0.5f});
    }
    EXPECT_EQ(evaluator.run(pixels), expected);
}

TEST_P(ShaderRun, HasRedFastestInTheTable) {
    // Entry (r, g, b) of 2 x 2 x 2 holds r, 10 g, 100 b.
    std::vector<float> table;
    for (int b = 0; b < 2; ++b)
        for (int g = 0; g < 2; ++g)
            for (int r = 0; r < 2; ++r)
                table.insert(table.end(), {1.0f * r, 10.0f * g, 100.0f * b});
    evaluator.load(
        function("return vec4(" + texture() + "(lut3d, 0.5 * inPixel.rgb + 0.25).rgb, inPixel.a);"),
        table.data(), 2);
    EXPECT_THAT(evaluator.run({1, 0, 0, 0.5f}), ElementsAre(1, 0, 0, 0.5f));
    EXPECT_THAT(evaluator.run({0, 1, 0, 1}), ElementsAre(0, 10, 0, 1));
    EXPECT_THAT(evaluator.run({0, 0, 1, 1}), ElementsAre(0, 0, 100, 1));
    EXPECT_THAT(evaluator.run({0.5f, 0.5f, 0.5f, 1}),
                ElementsAre(FloatEq(0.5f), FloatEq(5), FloatEq(50), FloatEq(1)));
    EXPECT_THAT(evaluator.run({-3, 7, 2, 1}), ElementsAre(0, 10, 100, 1)) << "clamped to the table's edge";
}

TEST_P(ShaderRun, SaysWhatDoesNotCompileAndWhere) {
    try {
        evaluator.load(function("return no_such_name;"), std::vector<float>(24).data(), 2);
        FAIL() << "the text compiles";
    } catch (const gl::GlError& error) {
        EXPECT_THAT(error.what(), HasSubstr("no_such_name"));
        EXPECT_THAT(error.what(), HasSubstr("return no_such_name;"));
    }
    EXPECT_THROW(evaluator.run({0, 0, 0, 0}), gl::GlError) << "nothing is loaded now";
}

INSTANTIATE_TEST_SUITE_P(Profiles, ShaderRun, testing::Values(gl::GlProfile::LEGACY, gl::GlProfile::CORE),
                         [](const auto& profile) {
                             return profile.param == gl::GlProfile::CORE ? "Core" : "Legacy";
                         });

TEST(ShaderRuns, OfTwoProfilesDoNotDisturbEachOther) {
    const std::vector<float> table(24);
    gl::GlEvaluator core(gl::GlProfile::CORE);
    core.load(function("return inPixel + vec4(1.0);"), table.data(), 2);
    {
        gl::GlEvaluator legacy(gl::GlProfile::LEGACY);
        legacy.load(function("return inPixel + vec4(2.0);"), table.data(), 2);
        EXPECT_THAT(core.run({0, 0, 0, 0}), ElementsAre(1, 1, 1, 1));
        EXPECT_THAT(legacy.run({0, 0, 0, 0}), ElementsAre(2, 2, 2, 2));
    }
    EXPECT_THAT(core.run({1, 1, 1, 1}), ElementsAre(2, 2, 2, 2));
}

} // namespace
