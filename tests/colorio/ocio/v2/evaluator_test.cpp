#include "colorio/ocio/v2/evaluator.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <random>
#include <vector>

#include "colorio/ocio/processor.h"
#include "tests/colorio/ocio/fast_path_guard.h"
#include "tests/colorio/ocio/test_configs.h"

namespace {

using testing::HasSubstr;
using testing::IsEmpty;

namespace library = ocio::library;

constexpr auto LOSSLESS = static_cast<library::OptimizationFlags>(
    library::OPTIMIZATION_LOSSLESS | library::OPTIMIZATION_NO_DYNAMIC_PROPERTIES);

class Evaluators : public testing::Test {
protected:
    ocio::Evaluator make(const char* source, const char* destination) {
        return {config_->getProcessor(source, destination), LOSSLESS};
    }

    TempDir folder_;
    ocio::ConfigRcPtr config_ = test_configs::create_built_in_like(folder_);
};

TEST_F(Evaluators, HaveAProgramUnlessItIsSwitchedOff) {
    EXPECT_TRUE(ocio::get_fast_path());
    EXPECT_TRUE(make("sRGB", "linear").get_program());
    EXPECT_THAT(make("sRGB", "linear").get_why_not(), IsEmpty());
    const FastPathGuard off(false);
    EXPECT_FALSE(make("sRGB", "linear").get_program());
    EXPECT_THAT(make("sRGB", "linear").get_why_not(), HasSubstr("switched off"));
}

TEST_F(Evaluators, KeepThePositionOfTheSwitchTheyWereMadeUnder) {
    const ocio::Evaluator made_on = make("sRGB", "linear");
    const FastPathGuard off(false);
    EXPECT_TRUE(made_on.get_program());
}

TEST_F(Evaluators, LeaveOperationsThatAreNotKnownToTheLibrary) {
    const auto table = library::Lut1DTransform::Create(3, false);
    table->setValue(2, 1.0f, INFINITY, 1.0f);
    table->setDirection(library::TRANSFORM_DIR_INVERSE);
    const library::ConstProcessorRcPtr processor = config_->getProcessor(table);
    const ocio::Evaluator evaluator(processor, LOSSLESS);
    EXPECT_FALSE(evaluator.get_program());
    EXPECT_THAT(evaluator.get_why_not(), HasSubstr("NaN or infinity"));
    float own[4] = {0.4f, 0.2f, 0.1f, 1}, librarys[4] = {0.4f, 0.2f, 0.1f, 1};
    evaluator.apply_rgba(own);
    processor->getOptimizedCPUProcessor(LOSSLESS)->applyRGBA(librarys);
    EXPECT_TRUE(std::equal(own, own + 4, librarys));
}

/// RGB_TO_HSV and two exponents, for conversions by the library. Merged, as 0.01 / 1.40973, they are out of
/// the range that the library takes from others.
library::GroupTransformRcPtr with_exponents_that_merge_out_of_range() {
    const auto group = library::GroupTransform::Create();
    group->appendTransform(library::FixedFunctionTransform::Create(library::FIXED_FUNCTION_RGB_TO_HSV));
    const auto append = [&](const double(&value)[4], library::TransformDirection direction) {
        const auto exponent = library::ExponentTransform::Create();
        exponent->setValue(value);
        exponent->setDirection(direction);
        group->appendTransform(exponent);
    };
    append({2, 0.01, 2, 1}, library::TRANSFORM_DIR_FORWARD);
    append({2.4193, 1.40973, 0.428917, 1}, library::TRANSFORM_DIR_INVERSE);
    return group;
}

TEST_F(Evaluators, TakeOperationsThatTheLibraryMergesOutOfItsOwnRange) {
    const FastPathGuard off(false);
    config_->setMajorVersion(2);
    const auto exponents = with_exponents_that_merge_out_of_range();
    for (const auto direction : {library::TRANSFORM_DIR_FORWARD, library::TRANSFORM_DIR_INVERSE}) {
        exponents->setDirection(direction);
        const library::ConstProcessorRcPtr processor = config_->getProcessor(exponents);
        float own[4] = {0.4f, 0.2f, 0.1f, 1}, librarys[4] = {0.4f, 0.2f, 0.1f, 1};
        ocio::Evaluator(processor, LOSSLESS).apply_rgba(own);
        processor->getOptimizedCPUProcessor(LOSSLESS)->applyRGBA(librarys);
        EXPECT_TRUE(std::equal(own, own + 4, librarys));
    }
}

TEST_F(Evaluators, OfSuchOperationsAreExplainedStepByStep) {
    const FastPathGuard off(false);
    config_->setMajorVersion(2);
    const auto processor = ocio::get_processor(config_, with_exponents_that_merge_out_of_range());
    std::array<float, 4> pixel{0.4f, 0.2f, 0.1f, 1};
    const ocio::Explanation explanation = processor->explain(pixel);
    processor->apply_rgba(pixel.data());
    ASSERT_EQ(explanation.steps.size(), 3U);
    for (std::size_t i = 0; i < pixel.size(); ++i)
        EXPECT_NEAR(explanation.steps.back().pixel[i], pixel[i], 1e-5f);
}

TEST_F(Evaluators, OfConversionsThatDoNothingTouchNothing) {
    for (const bool wanted : {true, false}) {
        const FastPathGuard position(wanted);
        const ocio::Evaluator evaluator = make("linear", "linear");
        EXPECT_TRUE(evaluator.is_no_op());
        EXPECT_FALSE(make("sRGB", "linear").is_no_op());
        float pixel[4] = {0.4f, 2, -1, 0.5f};
        evaluator.apply_rgba(pixel);
        evaluator.apply(ocio::PackedImageDesc{pixel, 1, 1, 4});
        evaluator.apply(ocio::PlanarImageDesc{pixel, pixel + 1, pixel + 2, nullptr, 1, 1});
        EXPECT_THAT(pixel, testing::ElementsAre(0.4f, 2, -1, 0.5f));
    }
}

/// However a host cuts an image, the bits are the same.
TEST_F(Evaluators, GiveAPixelTheSameBitsAloneInARowAndInAnImage) {
    constexpr long WIDTH = 97, HEIGHT = 31;
    constexpr std::size_t FLOATS = 4 * WIDTH * HEIGHT;
    std::mt19937 generator(3);
    std::uniform_real_distribution<float> uniform(-0.5f, 1.5f);
    std::vector<float> image(FLOATS);
    std::generate(image.begin(), image.end(), [&] { return uniform(generator); });
    for (const auto& [source, destination] : {std::pair("sRGB", "linear"), std::pair("linear", "Cineon")}) {
        const ocio::Evaluator evaluator = make(source, destination);
        std::vector<float> whole = image, rows = image, alone = image;
        evaluator.apply(ocio::PackedImageDesc{whole.data(), WIDTH, HEIGHT, 4});
        for (long row = 0; row < HEIGHT; ++row)
            evaluator.apply(ocio::PackedImageDesc{rows.data() + 4 * WIDTH * row, WIDTH, 1, 4});
        for (std::size_t i = 0; i < FLOATS; i += 4)
            evaluator.apply_rgba(alone.data() + i);
        EXPECT_NE(whole, image);
        EXPECT_EQ(rows, whole);
        EXPECT_EQ(alone, whole);
    }
}

} // namespace
