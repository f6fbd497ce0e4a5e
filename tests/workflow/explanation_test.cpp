#include "workflow/explanation.h"

#include "colorio/color_io_converter.h"
#include "tests/workflow/workflow_fixture.h"

namespace {

using testing::AnyOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using workflow::ConversionRequest;

using Explanations = WorkflowTest;

TEST_F(Explanations, FollowAPixelThroughEveryStage) {
    const workflow::Session session(show_options());
    ConversionRequest request;
    request.from = "half_light";
    const std::string cdl =
        folder.write("half.cc", "<ColorCorrection id=\"a\"><SOPNode><Slope>0.5 1 1</Slope><Offset>0 0 0"
                                "</Offset><Power>1 1 1</Power></SOPNode></ColorCorrection>");
    request.steps = {{workflow::ColorStep::CDL, cdl}};
    request.view = "Monitor.Warm";
    const std::vector<workflow::ExplainedStage> stages =
        workflow::explain_conversion(workflow::Conversion(session, request), {0.25f, 0.25f, 0.25f, 1});
    ASSERT_THAT(stages, SizeIs(3)); // to scene-linear, CDL, view
    const std::array<float, 3> reds = {0.5f, 0.25f, 0.5f};
    for (std::size_t i = 0; i < stages.size(); ++i) {
        ASSERT_GT(stages[i].how.steps.get_count(), 0u) << stages[i].title;
        const auto& last = stages[i].how.steps[stages[i].how.steps.get_count() - 1];
        EXPECT_FLOAT_EQ(last.pixel[0], reds[i]) << stages[i].title;
        EXPECT_FLOAT_EQ(last.pixel[1], 0.5f) << stages[i].title;
        EXPECT_THAT(workflow::describe_path(stages[i].how),
                    AnyOf(HasSubstr("SIMD code"), HasSubstr("OpenColorIO")));
    }
}

TEST_F(Explanations, OfWhatChangesNothingAreEmpty) {
    const workflow::Session session(show_options());
    ConversionRequest request;
    request.from = request.to = "lin";
    EXPECT_THAT(workflow::explain_conversion(workflow::Conversion(session, request), {1, 1, 1, 1}),
                IsEmpty());
}

TEST_F(Explanations, FailWithTheStageThatHasNone) {
    const workflow::Session session(show_options());
    ConversionRequest request;
    request.from = "lin";
    request.to = "half_light";
    const workflow::Conversion conversion(session, request);
    conversion.get_stages()[0].converter->configure("nowhere", "lin");
    const diagnostics::Diagnostic failure = failure_of([&] {
        workflow::explain_conversion(conversion, {1, 1, 1, 1});
    });
    EXPECT_THAT(failure.message, HasSubstr("lin to half_light"));
}

} // namespace
