// How names of version 2 configs are resolved, shown on the sample config.

#include "tests/tool/v2/version_two_fixture.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;

using VersionTwoNames = VersionTwoTest;

TEST_F(VersionTwoNames, OtherNamesAreResolvedWithANote) {
    const ToolRun result = explain("render space", "Printer Lights");
    EXPECT_THAT(result, Succeeds());
    EXPECT_THAT(result.out, AllOf(HasSubstr("source:        Scene|linear\n"),
                                  HasSubstr("destination:   Scene/Log|log\n")));
    EXPECT_THAT(result.err, AllOf(HasSubstr("'render space' is an alias of 'Scene|linear'"),
                                  HasSubstr("'Printer Lights' is an alias of 'Scene/Log|log'")));
}

TEST_F(VersionTwoNames, NamesInAnotherCaseAreResolvedWithANote) {
    const ToolRun result = explain("LINEAR", "scene|PICKING");
    EXPECT_THAT(result, Succeeds());
    EXPECT_THAT(result.out, HasSubstr("destination:   Scene|picking\n"));
    EXPECT_THAT(result.err, AllOf(HasSubstr("using 'Scene|linear' for 'LINEAR'"),
                                  HasSubstr("using 'Scene|picking' for 'scene|PICKING'")));
}

TEST_F(VersionTwoNames, NamesAsTheyArePublishedNeedNoNote) {
    EXPECT_EQ(explain("linear", "Scene|picking").err, "");
    EXPECT_EQ(explain("scene_linear", "compositing_log").err, "") << "roles";
}

TEST_F(VersionTwoNames, InactiveSpacesAreResolvedWithANote) {
    const ToolRun result = explain("Old Scan", "linear");
    EXPECT_THAT(result, Succeeds());
    EXPECT_THAT(result.out, HasSubstr("source:        Old|unpublished\n"));
    EXPECT_THAT(result.err, HasSubstr("'unpublished' is an inactive color space of config.ocio"));
}

TEST_F(VersionTwoNames, NamedTransformsAreRefusedAsSpaces) {
    EXPECT_THAT(
        explain("linear", "exposure up"),
        FailsWith(1, HasSubstr("'exposure up' is a named transform of config.ocio, not a color space")));
    EXPECT_THAT(explain("linear", "curve only"),
                FailsWith(1, HasSubstr("'curve only', an alias of 'gamma',")));
}

TEST_F(VersionTwoNames, ViewsInAnotherCaseAreResolvedWithANote) {
    const ToolRun result = run_on_sample({"explain", "linear", "--view", "monitor.FILM"});
    EXPECT_THAT(result, Succeeds());
    EXPECT_THAT(result.out, HasSubstr("destination:   Monitor.Film\n"));
    EXPECT_THAT(result.err, HasSubstr("using the view 'Monitor.Film' for 'monitor.FILM'"));
    EXPECT_EQ(run_on_sample({"explain", "linear", "--display", "Monitor", "--view", "Film"}).err, "");
}

TEST_F(VersionTwoNames, ADisplayMayHaveAFullStopInItsName) {
    EXPECT_THAT(run_on_sample({"explain", "linear", "--view", "Projector 2.6.Film"}), Succeeds());
    EXPECT_THAT(run_on_sample({"explain", "linear", "--display", "Projector 2.6", "--view", "Film"}),
                Succeeds());
}

TEST_F(VersionTwoNames, WhySaysWhatLeadsToTheDestination) {
    folder.write("frame.txt", "no image");
    const ToolRun result = run_on_sample(
        {"convert", path("frame.txt"), path("out.png"), "--why", "--from", "lin", "--view", "Monitor.Shot"});
    EXPECT_THAT(result.out, AllOf(HasSubstr("source:        Scene|linear, from --from 'lin', an alias"),
                                  HasSubstr("view 'Shot' of display 'Monitor', which shows Display|Monitor "
                                            "through the view transform filmic with the looks shot grade")));
}

} // namespace
