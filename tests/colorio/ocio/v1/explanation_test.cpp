#include "colorio/ocio/explanation.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "colorio/ocio/processor.h"
#include "tests/colorio/ocio/test_configs.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

TEST(ExplanationsOfV1, AreOneStepOfTheLibrary) {
    const TempDir folder;
    test_configs::ConfigText text;
    text.spaces = "  - !<ColorSpace>\n    name: x\n    to_reference: "
                  "!<MatrixTransform> {matrix: [2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 1], "
                  "offset: [0.5, 0.25, 0.125, 0]}\n";
    const auto processor = ocio::get_processor(test_configs::load(folder, text.str()), "x", "lin");
    const ocio::Explanation how = processor->explain({1, 2, 3, 0.75f});
    EXPECT_EQ(how.path, ocio::EvaluationPath::Library);
    EXPECT_EQ(how.reason, "OpenColorIO 1.1 shows no operations");
    EXPECT_THAT(how.operations, IsEmpty());
    ASSERT_THAT(how.steps, SizeIs(1));
    EXPECT_EQ(how.steps[0].operation, "OpenColorIO");
    EXPECT_THAT(how.steps[0].pixel, ElementsAre(2.5f, 4.25f, 6.125f, 0.75f));
    EXPECT_THAT(how.vector_target, IsEmpty());
}

} // namespace
