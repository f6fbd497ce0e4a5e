#include "colorio/color_io_evaluation.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/colorio/converter_fixture.h"
#include "tests/colorio/library_differences.h"

namespace {

using library_differences::expected;
using testing::HasSubstr;

class Evaluation : public ConverterTest {
protected:
    ~Evaluation() override { ColorIOEvaluation::set_vector_code(true); }

    ColorIOEvaluation::Explanation explain(float gray = 0) const {
        ColorIOEvaluation::Explanation how;
        EXPECT_TRUE(ColorIOEvaluation::explain(*converter, {gray, gray, gray, 1}, how));
        return how;
    }
};

TEST_F(Evaluation, OfAnUnconfiguredConverterIsNotExplained) {
    ColorIOEvaluation::Explanation how;
    how.reason = "as before";
    EXPECT_FALSE(ColorIOEvaluation::explain(*converter, {}, how));
    EXPECT_STREQ(how.reason.get_data(), "as before");
}

TEST_F(Evaluation, OfABypassIsNothing) {
    ASSERT_TRUE(converter->configure("sRGB", "linear"));
    ASSERT_FALSE(converter->configure("sRGB", "sRGB"));
    const ColorIOEvaluation::Explanation how = explain();
    EXPECT_EQ(how.path, ColorIOEvaluation::PATH_NONE);
    EXPECT_EQ(how.steps.get_count(), 0u);
}

TEST_F(Evaluation, HasItsOriginInTheLutFileOfABuiltinConversion) {
    ASSERT_TRUE(converter->configure("sRGB", "linear"));
    ColorIOEvaluation::Origin origin;
    ASSERT_TRUE(ColorIOEvaluation::find_origin(*converter, origin));
    ASSERT_EQ(origin.files.get_count(), 1u);
    EXPECT_THAT(origin.files[0].get_data(), testing::EndsWith(".spi1d"));
    ASSERT_TRUE(converter->configure("linear", "sRGB"));
    ColorIOEvaluation::Origin inverse;
    ASSERT_TRUE(ColorIOEvaluation::find_origin(*converter, inverse));
    EXPECT_STREQ(inverse.files[0].get_data(), origin.files[0].get_data());
    EXPECT_STRNE(inverse.digest.get_data(), origin.digest.get_data());
    converter->configure("sRGB", "sRGB");
    EXPECT_TRUE(ColorIOEvaluation::find_origin(*converter, origin));
    EXPECT_EQ(origin.files.get_count(), 0u) << "a bypass";
}

TEST_F(Evaluation, OfAnUnconfiguredConverterHasNoOrigin) {
    ColorIOEvaluation::Origin origin;
    EXPECT_FALSE(ColorIOEvaluation::find_origin(*converter, origin));
}

TEST_F(Evaluation, OfABuiltinConversionIsThatOfItsTable) {
    SKIP_WHERE_LISTED();
    ASSERT_TRUE(converter->configure("sRGB", "linear"));
    const ColorIOEvaluation::Explanation how = explain(0.5f);
    EXPECT_EQ(how.path, ColorIOEvaluation::PATH_VECTOR);
    ASSERT_EQ(how.operations.get_count(), 2u);
    EXPECT_STREQ(how.operations[1].get_data(), "1D LUT of 4101 entries, one curve");
    ASSERT_EQ(how.steps.get_count(), 2u);
    EXPECT_NEAR(how.steps[1].pixel[0], formula::srgb_to_linear(0.5), 2e-6);
    EXPECT_EQ(how.steps[1].pixel[3], 1.0f);
}

TEST_F(Evaluation, IsTheLibrarysWithoutTheVectorCode) {
    ColorIOEvaluation::set_vector_code(false);
    EXPECT_FALSE(ColorIOEvaluation::get_vector_code());
    ASSERT_TRUE(converter->configure("sRGB", "linear"));
    const ColorIOEvaluation::Explanation how = explain(0.5f);
    EXPECT_EQ(how.path, ColorIOEvaluation::PATH_LIBRARY);
    EXPECT_THAT(how.reason.get_data(), HasSubstr(expected("why the library converts")));
    ASSERT_GE(how.steps.get_count(), 1u);
    EXPECT_NEAR(how.steps[how.steps.get_count() - 1].pixel[0], formula::srgb_to_linear(0.5), 2e-6);
}

TEST_F(Evaluation, NamesItsInstructionSetAndTheLibrary) {
    ASSERT_TRUE(converter->configure("sRGB", "linear"));
    EXPECT_STREQ(ColorIOEvaluation::get_vector_target(), explain().vector_target.get_data());
    EXPECT_THAT(ColorIOEvaluation::get_library_version(), testing::ContainsRegex("^[12][.][0-9]+[.][0-9]+$"));
}

TEST_F(Evaluation, KeepsToTheSwitchAsItWasWhenTheConverterWasConfigured) {
    SKIP_WHERE_LISTED();
    ASSERT_TRUE(converter->configure("sRGB", "linear"));
    EXPECT_EQ(explain().path, ColorIOEvaluation::PATH_VECTOR);
    ColorIOEvaluation::set_vector_code(false);
    EXPECT_EQ(explain().path, ColorIOEvaluation::PATH_VECTOR) << "configured before";
    ASSERT_TRUE(converter->configure("linear", "sRGB"));
    EXPECT_EQ(explain().path, ColorIOEvaluation::PATH_LIBRARY);
}

} // namespace
