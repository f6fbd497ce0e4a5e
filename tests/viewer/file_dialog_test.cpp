#include "viewer/file_dialog.h"

#include <filesystem>

#include "tests/viewer/panels_fixture.h"

namespace {

using testing::HasSubstr;
using viewer::Layout;

/// The file dialog.
class DialogOfAViewer : public PanelsOfAViewer {
protected:
    DialogOfAViewer() {
        folder.write("shows/other.ocio", folder.read("test.ocio"));
        folder.write("shows/luts/shown.spi1d", "Version 1\nFrom 0 2\nLength 2\nComponents 1\n{\n0\n0.5\n}\n");
        folder.write("shows/broken.ocio", "ocio_profile_version: 1\nroles: [");
    }
};

TEST_F(DialogOfAViewer, OpensAConfigurationWithTheMouse) {
    click("File");
    click("Open config...");
    EXPECT_TRUE(shows("test.ocio")) << "it starts beside the configuration in force";
    EXPECT_FALSE(shows("ramps.exr")) << "not a config";
    double_click("shows/");
    click("other.ocio");
    click("Open");
    EXPECT_FALSE(shows("Cancel")) << "it closes";
    EXPECT_EQ(live_config->get_config_path(), folder.file("shows/other.ocio"));
    click("View");
    click("Screen.Shown");
    expect_shown(0.25);
}

TEST_F(DialogOfAViewer, OpensAConfigurationWithTheKeysAlone) {
    type("c");
    EXPECT_TRUE(shows("test.ocio"));
    press("Down");
    press("Up");
    press("PageDown"); // to the last, test.ocio
    press("PageUp");   // to the first, cache/
    type("shows");
    press("Enter");
    EXPECT_TRUE(shows("other.ocio"));
    press("Down");
    press("Down"); // luts/, broken.ocio, other.ocio
    press("Enter");
    EXPECT_FALSE(shows("Cancel"));
    EXPECT_EQ(live_config->get_config_path(), folder.file("shows/other.ocio"));
}

TEST_F(DialogOfAViewer, StaysAndSaysWhyAFileIsUnusable) {
    type("c");
    type(folder.file("shows/broken.ocio"));
    press("Enter");
    EXPECT_TRUE(shows("Cancel"));
    EXPECT_THAT(format_with_hint(viewer->get_error().value()), HasSubstr("broken.ocio"));
    EXPECT_EQ(live_config->get_config_path(), config) << "what was in force stays";
    press("Escape");
    EXPECT_FALSE(shows("Cancel"));
    expect_shown(1);
}

TEST_F(DialogOfAViewer, LeavesEverythingAsItWasWithEscapeAndCancel) {
    for (const bool by_key : {true, false}) {
        type("c");
        EXPECT_TRUE(shows("Cancel"));
        type("w"); // A path, and no command.
        if (by_key)
            press("Escape");
        else
            click("Cancel");
        EXPECT_FALSE(shows("Cancel"));
        EXPECT_EQ(model->get_layout(), viewer::Layout::SINGLE);
        EXPECT_EQ(live_config->get_config_path(), config);
    }
    click("Wipe");
    EXPECT_EQ(model->get_layout(), viewer::Layout::WIPE) << "the panels can be used again";
}

TEST_F(DialogOfAViewer, OpensImagesAndCdlLibraries) {
    std::filesystem::create_directory(folder.file("shots"));
    write_ramps(folder.file("shots/next.exr"), 8, 8);
    type("p");
    EXPECT_TRUE(shows("ramps.exr"));
    EXPECT_FALSE(shows("test.ocio"));
    type("shots/next.exr");
    press("Enter");
    EXPECT_EQ(model->get_image()->path, folder.file("shots/next.exr"));

    folder.write(
        "grade.ccc",
        "<ColorCorrectionCollection><ColorCorrection id=\"grade\"><SOPNode><Slope>0.5 0.5 0.5</Slope>"
        "<Offset>0 0 0</Offset><Power>1 1 1</Power></SOPNode><SatNode><Saturation>1</Saturation>"
        "</SatNode></ColorCorrection></ColorCorrectionCollection>");
    click("CDL library...");
    double_click("grade.ccc");
    click("CDL");
    click("grade");
    EXPECT_EQ(settings().cdl, "grade");
}

TEST_F(DialogOfAViewer, ShowsAllFilesAndTheFolderAbove) {
    type("c");
    click("All files");
    EXPECT_TRUE(shows("ramps.exr"));
    double_click("shows/");
    EXPECT_TRUE(shows("broken.ocio"));
    click("Up");
    EXPECT_TRUE(shows("shows/"));
    const EnvGuard home("HOME", folder.file("shows"));
    click("Home");
    EXPECT_TRUE(shows("broken.ocio"));
}

} // namespace
