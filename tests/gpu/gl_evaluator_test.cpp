#include "gl/gl_evaluator.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "diagnostics/failure.h"

namespace {

using gl::GlEvaluator;
using gl::GlProfile;
using testing::ElementsAre;
using testing::FloatEq;
using testing::HasSubstr;
using testing::Not;

/// The body as a host's function.
std::string function(const std::string& body) {
    return "vec4 OCIODisplay(in vec4 inPixel, const sampler3D lut3d) {\n" + body + "\n}\n";
}

/// The code of the failure of `act`.
template <class Act>
diagnostics::Code code_of(const Act& act) {
    try {
        act();
    } catch (const diagnostics::Failure& failure) {
        return failure.get_worst().code;
    }
    ADD_FAILURE() << "it succeeds";
    return {};
}

class ShaderRun : public testing::TestWithParam<gl::GlProfile> {
protected:
    std::string texture() const { return GetParam() == gl::GlProfile::CORE ? "texture" : "texture3D"; }

    gl::GlEvaluator evaluator{GetParam()};
};

TEST_P(ShaderRun, KeepsEveryBitOfAFloat) {
    evaluator.load(function("return inPixel;"), {{std::vector<float>(24).data(), 2}});
    const std::vector<float> pixels = {0.1f, -7.25f, 65504, 1e-6f, 3e38f, 0.333333343f, 1, 0};
    EXPECT_EQ(evaluator.run(pixels), pixels);
}

TEST_P(ShaderRun, RunsManyPixelsInTheirOrder) {
    evaluator.load(function("return inPixel * vec4(2.0, 4.0, 8.0, 1.0);"),
                   {{std::vector<float>(24).data(), 2}});
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
        {{table.data(), 2}});
    EXPECT_THAT(evaluator.run({1, 0, 0, 0.5f}), ElementsAre(1, 0, 0, 0.5f));
    EXPECT_THAT(evaluator.run({0, 1, 0, 1}), ElementsAre(0, 10, 0, 1));
    EXPECT_THAT(evaluator.run({0, 0, 1, 1}), ElementsAre(0, 0, 100, 1));
    EXPECT_THAT(evaluator.run({0.5f, 0.5f, 0.5f, 1}),
                ElementsAre(FloatEq(0.5f), FloatEq(5), FloatEq(50), FloatEq(1)));
    EXPECT_THAT(evaluator.run({-3, 7, 2, 1}), ElementsAre(0, 10, 100, 1)) << "clamped to the table's edge";
}

TEST_P(ShaderRun, SaysWhatDoesNotCompileAndWhere) {
    try {
        evaluator.load(function("return no_such_name;"), {{std::vector<float>(24).data(), 2}});
        FAIL() << "the text compiles";
    } catch (const diagnostics::Failure& failure) {
        const diagnostics::Diagnostic& error = failure.get_worst();
        EXPECT_EQ(error.code, diagnostics::Code::SHADER_INVALID);
        EXPECT_THAT(error.message, HasSubstr("no_such_name"));
        EXPECT_THAT(error.message, HasSubstr("(line 3: `return no_such_name;`)"))
            << "after a line of the version";
        EXPECT_THAT(error.message, Not(HasSubstr("\n")));
    }
    EXPECT_EQ(code_of([&] {
                  evaluator.run({0, 0, 0, 0});
              }),
              diagnostics::Code::USAGE_REFUSED)
        << "nothing is loaded now";
}

TEST_P(ShaderRun, TakesAnyNumberOfLuts) {
    const std::vector<float> ones(24, 1), twos(24, 2);
    evaluator.load("vec4 OCIODisplay(in vec4 inPixel) { return inPixel + vec4(1.0); }\n", {});
    EXPECT_THAT(evaluator.run({1, 2, 3, 4}), ElementsAre(2, 3, 4, 5));
    evaluator.load(
        "vec4 OCIODisplay(in vec4 inPixel, const sampler3D a, const sampler3D b, in float factor) {\n"
        "    return vec4(" +
            texture() + "(a, inPixel.rgb).r, " + texture() + "(b, inPixel.rgb).r, factor, 0.5);\n}\n",
        {{ones.data(), 2}, {twos.data(), 2}}, "3.0");
    EXPECT_THAT(evaluator.run({0, 0, 0, 1}), ElementsAre(1, 2, 3, 0.5f));
}

TEST_P(ShaderRun, RefusesALutThatTheDriverDoesNotSupport) {
    constexpr int TOO_MANY = 1 << 20;
    EXPECT_EQ(code_of([&] {
                  evaluator.load(function("return inPixel;"), {{nullptr, TOO_MANY}});
              }),
              diagnostics::Code::GPU_LIMIT);
}

INSTANTIATE_TEST_SUITE_P(Profiles, ShaderRun, testing::Values(gl::GlProfile::LEGACY, gl::GlProfile::CORE),
                         [](const auto& profile) {
                             return profile.param == gl::GlProfile::CORE ? "Core" : "Legacy";
                         });

TEST(ShaderRuns, OfTwoProfilesDoNotDisturbEachOther) {
    const std::vector<float> table(24);
    gl::GlEvaluator core(gl::GlProfile::CORE);
    core.load(function("return inPixel + vec4(1.0);"), {{table.data(), 2}});
    {
        gl::GlEvaluator legacy(gl::GlProfile::LEGACY);
        legacy.load(function("return inPixel + vec4(2.0);"), {{table.data(), 2}});
        EXPECT_THAT(core.run({0, 0, 0, 0}), ElementsAre(1, 1, 1, 1));
        EXPECT_THAT(legacy.run({0, 0, 0, 0}), ElementsAre(2, 2, 2, 2));
    }
    EXPECT_THAT(core.run({1, 1, 1, 1}), ElementsAre(2, 2, 2, 2));
}

} // namespace
