#include "colorio/ocio/explanation.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>

#include "colorio/ocio/processor.h"
#include "tests/colorio/ocio/test_configs.h"

namespace {

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
/// The inverse of a 3D LUT is an operation that only the library evaluates.
constexpr char LUT_3D[] = "LUT_3D_SIZE 2\n0 0 0\n0.9 0 0\n0 0.8 0\n1 1 0\n0 0 0.7\n1 0 1\n0 1 1\n1 1 1\n";

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
    const std::string path = folder_.write("bent.cube", LUT_3D);
    const auto processor = make("!<GroupTransform> {children: [!<FileTransform> {src: " + path +
                                ", interpolation: linear, direction: inverse}, "
                                "!<MatrixTransform> {offset: [0.5, 0.25, 0.125, 0]}]}");
    Pixel pixel{0.3f, 0.01f, 0.02f, 1};
    const ocio::Explanation how = processor->explain(pixel);
    EXPECT_EQ(how.path, ocio::EvaluationPath::Library);
    EXPECT_EQ(how.reason, "the inverse of a 3D table is not known here");
    ASSERT_THAT(how.operations, SizeIs(2));
    EXPECT_EQ(how.operations[0], "Lut3DTransform");
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
