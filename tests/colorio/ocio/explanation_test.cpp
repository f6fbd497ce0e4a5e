#include "colorio/ocio/explanation.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "colorio/ocio/processor.h"
#include "tests/colorio/ocio/test_configs.h"

namespace {

using testing::IsEmpty;

class EveryExplanation : public testing::Test {
protected:
    /// From "x", whose transform is given as YAML, to "lin".
    ocio::ConstProcessorRcPtr make(const std::string& transform) {
        test_configs::ConfigText text;
        text.spaces = "  - !<ColorSpace>\n    name: x\n    to_reference: " + transform + "\n";
        return ocio::get_processor(test_configs::load(folder_, text.str()), "x", "lin");
    }

private:
    TempDir folder_;
};

TEST_F(EveryExplanation, IsEmptyWhereThereIsNothingToDo) {
    const ocio::Explanation how =
        make("!<MatrixTransform> {matrix: [1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1]}")->explain({});
    EXPECT_EQ(how.path, ocio::EvaluationPath::None);
    EXPECT_THAT(how.steps, IsEmpty());
    EXPECT_THAT(how.reason, IsEmpty());
}

TEST_F(EveryExplanation, EndsWithTheConvertedPixel) {
    const auto processor = make("!<GroupTransform> {children: [!<CDLTransform> {slope: [1.5, 1, 0.5]}, "
                                "!<MatrixTransform> {offset: [0.5, 0.25, 0.125, 0]}]}");
    const ocio::Explanation how = processor->explain({1, 2, 3, 0.75f});
    ASSERT_FALSE(how.steps.empty());
    EXPECT_THAT(how.steps.back().pixel,
                testing::Pointwise(testing::FloatNear(1e-6f), {2.0f, 2.25f, 1.625f, 0.75f}));
}

} // namespace
