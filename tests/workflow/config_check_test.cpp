#include "workflow/config_check.h"

#include "tests/tool/configs.h"
#include "tests/workflow/workflow_fixture.h"

namespace {

using diagnostics::Code;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

using ConfigChecks = WorkflowTest;

TEST_F(ConfigChecks, TryEverySpaceAndView) {
    const workflow::Session session(show_options());
    const workflow::CheckReport report = workflow::check_config();
    EXPECT_EQ(report.scene_linear, "lin");
    EXPECT_EQ(report.spaces_tried, 2u) << "all but scene-linear itself";
    EXPECT_EQ(report.views_tried, 3u);
    EXPECT_THAT(report.failures, IsEmpty());
}

TEST_F(ConfigChecks, NameWhatDoesNotWorkWithItsCause) {
    std::string text = SHOW_CONFIG;
    text += "  - !<ColorSpace>\n    name: film\n"
            "    to_reference: !<FileTransform> {src: \"artist's film.cube\", interpolation: linear}\n";
    const workflow::Session session(options_for(text));
    const workflow::CheckReport report = workflow::check_config();
    ASSERT_THAT(report.failures, SizeIs(1));
    const workflow::CheckFailure& failure = report.failures[0];
    EXPECT_EQ(failure.subject, workflow::CheckFailure::COLOR_SPACE);
    EXPECT_EQ(failure.name, "film");
    EXPECT_THAT(failure.directions, ElementsAre("to lin", "from lin"));
    EXPECT_EQ(failure.reason.code, Code::LUT_MISSING);
    EXPECT_EQ(failure.reason.file, "artist's film.cube");
}

TEST_F(ConfigChecks, TryLooksOnSceneLinearColorsAsConversionsApplyThem) {
    std::string text = SHOW_CONFIG;
    text.insert(
        text.find("displays:"),
        "looks:\n"
        "  - !<Look> {name: fine, process_space: half_light, transform: !<CDLTransform> {slope: [2, 1, 1]}}\n"
        "  - !<Look> {name: no way there, process_space: film, transform: !<CDLTransform> {slope: [2, 1, "
        "1]}}\n");
    text += "  - !<ColorSpace>\n    name: film\n"
            "    to_reference: !<FileTransform> {src: film.cube, interpolation: linear}\n";
    const workflow::Session session(options_for(text));
    const workflow::CheckReport report = workflow::check_config();
    EXPECT_EQ(report.looks_tried, 2u);
    ASSERT_THAT(report.notes, SizeIs(1));
    EXPECT_EQ(report.notes[0].subject, workflow::CheckFailure::LOOK);
    EXPECT_EQ(report.notes[0].name, "no way there");
    EXPECT_EQ(report.notes[0].reason.code, Code::LUT_MISSING);
    EXPECT_EQ(report.notes[0].reason.file, "film.cube");
    // The same reason as that of a conversion that applies the look.
    workflow::ConversionRequest request;
    request.from = "lin";
    request.steps = {{workflow::ColorStep::LOOKS, "no way there"}};
    const diagnostics::Diagnostic refusal = failure_of([&] { workflow::Conversion(session, request); });
    EXPECT_EQ(refusal.message, "cannot apply the looks 'no way there': " + report.notes[0].reason.message);
}

} // namespace
