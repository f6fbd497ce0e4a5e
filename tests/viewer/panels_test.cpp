#include <filesystem>
#include <new>
#include <set>
#include <stdexcept>

#include "diagnostics/failure.h"
#include "tests/viewer/screen_fixture.h"
#include "viewer/fonts.h"
#include "viewer/panels_attempt.h"

namespace {

using testing::HasSubstr;
using viewer::Layout;
using viewer::ViewModel;

/// The viewer's panels, worked with mouse and keys.
class PanelsOfAViewer : public ScreenTest {
protected:
    viewer::ColorSettings settings() const { return model->get_settings(viewer::ViewModel::FIRST); }

    /// Has the CDLs of these names, which change nothing, listed.
    void list_cdls(const std::vector<std::string>& names) {
        std::string library = "<ColorCorrectionCollection>";
        for (const std::string& name : names)
            library += "<ColorCorrection id=\"" + name +
                       "\"><SOPNode><Slope>1 1 1</Slope><Offset>0 0 0</Offset><Power>1 1 1</Power></SOPNode>"
                       "<SatNode><Saturation>1</Saturation></SatNode></ColorCorrection>";
        model->use_cdl_library(folder.write("names.ccc", library + "</ColorCorrectionCollection>"));
        viewer->act();
    }
    /// The letters of the item of that name in the panels, as bright and dark pixels.
    std::string read_line(const std::string& name) {
        constexpr int LEFT = 10, RIGHT = 140, ABOVE = 6;
        const int middle = static_cast<int>(find(name).y);
        if (middle < ABOVE)
            return "";
        const ShownImage shown = take_screenshot();
        std::string letters;
        for (int y = middle - ABOVE; y < middle + ABOVE; ++y)
            for (int x = LEFT; x < RIGHT; ++x)
                letters += shown.at(x, y)[1] > 160 ? '#' : ' ';
        EXPECT_NE(letters.find('#'), std::string::npos) << "no letters at " << name;
        return letters;
    }
};

TEST_F(PanelsOfAViewer, ShowAnotherViewWhenItIsChosen) {
    EXPECT_EQ(settings().view, "Screen.Raw");
    expect_shown(1);
    click("View");
    click("Screen.Shown");
    EXPECT_EQ(settings().view, "Screen.Shown");
    expect_shown(0.5);
    click("View");
    click("Screen.Raw");
    expect_shown(1);
}

TEST_F(PanelsOfAViewer, HaveMenusThatOpenAndClose) {
    EXPECT_FALSE(shows("Wipe between two views"));
    click("Show");
    EXPECT_TRUE(shows("Wipe between two views"));
    click("Show");
    EXPECT_FALSE(shows("Wipe between two views"));
    click("Show");
    click("Wipe between two views");
    EXPECT_FALSE(shows("Wipe between two views")) << "a choice closes the menu";
    EXPECT_EQ(model->get_layout(), viewer::Layout::WIPE);
}

TEST_F(PanelsOfAViewer, CloseListsAndMenusWithEscape) {
    click("Show");
    EXPECT_TRUE(shows("Fit"));
    press("Escape");
    EXPECT_FALSE(shows("Fit"));
    click("View");
    EXPECT_TRUE(shows("Screen.Shown"));
    press("Escape");
    EXPECT_FALSE(shows("Screen.Shown"));
    EXPECT_EQ(settings().view, "Screen.Raw");

    list_cdls({"a", "b", "c", "d", "e", "f", "g", "h", "i", "j", "k", "l", "m"});
    click("CDL");
    click("search");
    type("m");
    EXPECT_TRUE(shows("m"));
    press("Escape");
    EXPECT_FALSE(shows("m")) << "from the field to search it too";
    EXPECT_EQ(settings().cdl, "No CDL");
}

TEST_F(PanelsOfAViewer, ShowTheSecondViewWhereAWipeIsWanted) {
    EXPECT_FALSE(shows("Second view"));
    click("Wipe");
    click("Second view");
    click("Screen.Shown");
    const ShownImage shown = take_screenshot();
    const float left[] = {1.5f * 60 / (WIDTH - 1)}, right[] = {0.5f * 1.5f * 240 / (WIDTH - 1)};
    EXPECT_NEAR(shown.at(PANELS + 60, 10)[0], 255 * left[0], 2);
    EXPECT_NEAR(shown.at(PANELS + 240, 10)[0], 255 * right[0], 2);
}

TEST_F(PanelsOfAViewer, MoveTheWipeWithShiftAndTheImageWithout) {
    click("Wipe");
    viewer->get_hand().drag(PANELS + 150, 200, PANELS + 75, 200, true);
    viewer->act();
    EXPECT_NEAR(model->get_wipe(), 0.25, 0.01);
    const viewer::Placement before = model->get_camera().get_placement();
    viewer->get_hand().drag(PANELS + 150, 200, PANELS + 130, 240, false);
    viewer->act();
    EXPECT_EQ(model->get_camera().get_placement().origin_x, before.origin_x - 20);
    EXPECT_EQ(model->get_camera().get_placement().origin_y, before.origin_y + 40);
    EXPECT_NEAR(model->get_wipe(), 0.25, 0.01);
}

TEST_F(PanelsOfAViewer, ZoomWhereTheWheelIsTurned) {
    const double x = model->get_camera().get_placement().to_image_x(50);
    viewer->get_hand().turn_wheel(PANELS + 50, 100, 3);
    viewer->act();
    const viewer::Placement zoomed = model->get_camera().get_placement();
    EXPECT_DOUBLE_EQ(zoomed.zoom, 1.25 * 1.25 * 1.25);
    EXPECT_NEAR(zoomed.to_image_x(50), x, 1);
}

TEST_F(PanelsOfAViewer, FollowKeys) {
    type("s");
    EXPECT_EQ(model->get_layout(), viewer::Layout::SIDE_BY_SIDE);
    type("d");
    EXPECT_EQ(model->get_layout(), viewer::Layout::DIFFERENCE);
    type("o");
    EXPECT_EQ(model->get_layout(), viewer::Layout::SINGLE);
    type("[");
    EXPECT_EQ(settings().exposure, -0.5f);
    type("]]");
    EXPECT_EQ(settings().exposure, 0.5f);
    click("0");
    EXPECT_EQ(settings().exposure, 0);
    type("1");
    EXPECT_FALSE(model->get_camera().is_fitting());
    type("f");
    EXPECT_TRUE(model->get_camera().is_fitting());
}

TEST_F(PanelsOfAViewer, StepThroughImagesAndSayWhichCannotBeRead) {
    model->add_images({folder.write("broken.exr", "no image")});
    viewer->act();
    EXPECT_EQ(count_error_pixels(), 0);
    click(">");
    EXPECT_EQ(model->get_images().get_error().value().file, folder.file("broken.exr"));
    EXPECT_GT(count_error_pixels(), 50);
    expect_shown(1);
    type(">");
    EXPECT_EQ(count_error_pixels(), 0);
}

TEST_F(PanelsOfAViewer, ShowNamesAsTheyAre) {
    // Marks of the panels' library: what follows the first is not shown, the second makes names one.
    const std::vector<std::string> names = {"x##y", "x##z", "x###y", "v###y"};
    list_cdls(names);
    std::set<std::string> shown;
    for (const std::string& name : names) {
        click("CDL");
        click(name);
        EXPECT_EQ(settings().cdl, name);
        shown.insert(read_line("CDL"));
    }
    EXPECT_EQ(shown.size(), names.size()) << "each can be told from the others in the closed list";
    click("CDL");
    shown.clear();
    for (const std::string& name : names)
        shown.insert(read_line(name));
    EXPECT_EQ(shown.size(), names.size()) << "and in the open one";
}

TEST_F(PanelsOfAViewer, ShowNamesOfOtherAlphabets) {
    if (viewer::find_system_font().empty())
        GTEST_SKIP() << "there is no font of the system at the usual places";
    const std::vector<std::string> names = {"\u0416\u0451", "\u042f\u0451", "\u03a9\u03bb", "\u0141\u017a"};
    list_cdls(names);
    std::set<std::string> shown;
    for (const std::string& name : names) {
        model->set_cdl(name);
        viewer->act();
        shown.insert(read_line("CDL"));
    }
    EXPECT_EQ(shown.size(), names.size());
}

TEST_F(PanelsOfAViewer, EndTheViewer) {
    EXPECT_FALSE(viewer->is_closed());
    click("File");
    click("Quit");
    EXPECT_TRUE(viewer->is_closed());
}

TEST(ChangesInPanels, LeaveNoFrameUnfinished) {
    EXPECT_EQ(viewer::find_refusal([] { diagnostics::fail(diagnostics::Code::USAGE, "refused"); }),
              "refused");
    EXPECT_EQ(viewer::find_refusal([] { throw std::runtime_error("failed"); }), "failed");
    EXPECT_NE(viewer::find_refusal([] { throw std::bad_alloc(); }), "");
    bool is_done = false;
    EXPECT_EQ(viewer::find_refusal([&] { is_done = true; }), "");
    EXPECT_TRUE(is_done);
}

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
    EXPECT_FALSE(shows("ramps.exr")) << "which is no configuration";
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
    EXPECT_THAT(viewer->get_error().value().message, HasSubstr("broken.ocio"));
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
