#include "colorio/ocio/explanation.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cmath>

#include "colorio/ocio/processor.h"
#include "tests/colorio/ocio/test_configs.h"

namespace {

namespace library = ocio::library;

using test_configs::ConfigText;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

using Pixel = std::array<float, 4>;

class Explanations : public testing::Test {
protected:
    ~Explanations() override { ocio::set_fast_path(true); }

    /// From "x", whose transform is given as YAML, to "lin".
    ocio::ConstProcessorRcPtr make(const std::string& transform) {
        ConfigText text;
        text.version = "2";
        text.spaces = "  - !<ColorSpace>\n    name: x\n    to_scene_reference: " + transform + "\n";
        return ocio::get_processor(test_configs::load(folder_, text.str()), "x", "lin");
    }

    TempDir folder_;
};

constexpr char SHIFT_THEN_DOUBLE[] =
    "!<GroupTransform> {children: [!<MatrixTransform> {offset: [0.5, 0.25, 0.125, 0]}, "
    "!<MatrixTransform> {matrix: [2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 1]}]}";
TEST_F(Explanations, ListTheOperationsAsGivenAndAsCarriedOut) {
    const ocio::Explanation how = make(SHIFT_THEN_DOUBLE)->explain({1, 2, 3, 0.75f});
    EXPECT_THAT(how.operations,
                ElementsAre("matrix 1 0 0 0 / 0 1 0 0 / 0 0 1 0 / 0 0 0 1, offset 0.5 0.25 0.125 0",
                            "matrix 2 0 0 0 / 0 2 0 0 / 0 0 2 0 / 0 0 0 1, offset 0 0 0 0"));
    ASSERT_THAT(how.steps, SizeIs(1));
    EXPECT_EQ(how.steps[0].operation, "matrix 2 0 0 0 / 0 2 0 0 / 0 0 2 0 / 0 0 0 1, offset 1 0.5 0.25 0");
    EXPECT_THAT(how.steps[0].pixel, ElementsAre(3, 4.5f, 6.25f, 0.75f));
}

TEST_F(Explanations, ListTheOperationsThatCancel) {
    const ocio::Explanation how =
        make("!<GroupTransform> {children: ["
             "!<MatrixTransform> {matrix: [2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 1]}, "
             "!<MatrixTransform> {matrix: [0.5, 0, 0, 0, 0, 0.5, 0, 0, 0, 0, 0.5, 0, 0, 0, 0, 1]}]}")
            ->explain({1, 2, 3, 1});
    EXPECT_EQ(how.path, ocio::EvaluationPath::None);
    EXPECT_THAT(how.operations, SizeIs(2));
    EXPECT_THAT(how.steps, IsEmpty());
}

TEST_F(Explanations, NameTheInstructionSetOfTheVectorCode) {
    const ocio::Explanation how = make(SHIFT_THEN_DOUBLE)->explain({});
    EXPECT_EQ(how.path, ocio::EvaluationPath::Vector);
    EXPECT_FALSE(how.vector_target.empty());
    EXPECT_THAT(how.reason, IsEmpty());
}

TEST_F(Explanations, SayWhyTheLibraryIsLeftTheWork) {
    // The inverse of a LUT with infinity is an operation that only the library evaluates.
    const auto table = library::Lut1DTransform::Create(3, false);
    table->setValue(2, 1.0f, INFINITY, 1.0f);
    table->setDirection(library::TRANSFORM_DIR_INVERSE);
    const auto shift = library::MatrixTransform::Create();
    const double offset[4] = {0.5, 0.25, 0.125, 0};
    shift->setOffset(offset);
    const auto group = library::GroupTransform::Create();
    group->appendTransform(table);
    group->appendTransform(shift);
    const auto config = test_configs::load(folder_, ConfigText{}.str());
    const auto processor = ocio::get_processor(config, ocio::ConstTransformRcPtr(group));
    Pixel pixel{0.3f, 0.01f, 0.02f, 1};
    const ocio::Explanation how = processor->explain(pixel);
    EXPECT_EQ(how.path, ocio::EvaluationPath::Library);
    EXPECT_EQ(how.reason, "the inverse of a 1D LUT with NaN or infinity is not supported by the SIMD code");
    ASSERT_THAT(how.operations, SizeIs(2));
    EXPECT_EQ(how.operations[0], "Lut1DTransform");
    ASSERT_THAT(how.steps, SizeIs(2));
    processor->apply_rgba(pixel.data());
    EXPECT_EQ(how.steps[1].pixel, pixel);
    EXPECT_FLOAT_EQ(how.steps[1].pixel[1] - how.steps[0].pixel[1], 0.25f);
}

TEST_F(Explanations, SaySoWhenTheVectorCodeIsSwitchedOff) {
    ocio::set_fast_path(false);
    const ocio::Explanation how = make(SHIFT_THEN_DOUBLE)->explain({1, 2, 3, 0.75f});
    EXPECT_EQ(how.path, ocio::EvaluationPath::Library);
    EXPECT_THAT(how.reason, HasSubstr("switched off"));
    ASSERT_THAT(how.steps, SizeIs(1));
    EXPECT_THAT(how.steps[0].pixel, ElementsAre(3, 4.5f, 6.25f, 0.75f));
}

} // namespace
