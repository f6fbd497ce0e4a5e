#include "diagnostics/failure.h"
#include "tests/colorio/library_differences.h"
#include "tests/viewer/viewer_fixture.h"
#include "tool/program.h"

namespace {

using testing::HasSubstr;

class CommandView : public ViewerTest {
protected:
    CommandView() { write_ramps(image, 32, 16); }

    int run(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "view");
        return tool::run(arguments, out, err);
    }

    std::string image = folder.file("image.exr");
    std::string screenshot = folder.file("screenshot.png");
};

TEST_F(CommandView, WritesAScreenshotWithoutAWindow) {
    EnvGuard no_display("DISPLAY");
    EnvGuard no_wayland("WAYLAND_DISPLAY");
    ASSERT_EQ(run({image, "--size", "32x16", "--view", "Tavelion.linear", "--screenshot", screenshot}), 0)
        << err.str();
    const ShownImage shown = read_shown(screenshot);
    ASSERT_EQ(shown.width, 32);
    ASSERT_EQ(shown.height, 16);
    for (int x : {0, 7, 31})
        for (int y : {0, 9, 15}) {
            const float right = 1.5f * static_cast<float>(x) / 31, down = 1.5f * static_cast<float>(y) / 15;
            const float color[] = {right, down, 0.25f * (right + down)};
            const Rgb expected = to_screen(color);
            for (size_t i = 0; i < 3; ++i)
                EXPECT_NEAR(shown.at(x, y)[i], expected[i], 1) << x << ", " << y;
        }
    EXPECT_THAT(err.str(), HasSubstr("Tavelion|linear, from the built-in associations, category Open EXR"));
}

TEST_F(CommandView, TakesItsSettingsFromTheCommandLine) {
    write_lut(folder, 0.5);
    const std::string config = write_config(folder);
    ASSERT_EQ(run({image, "--config", config, "--space", "lin", "--view", "Screen.Shown", "--exposure", "-1",
                   "--size", "32x16", "--screenshot", screenshot}),
              0)
        << err.str();
    EXPECT_NEAR(read_shown(screenshot).at(31, 0)[0], 255 * 1.5 * 0.5 * 0.5, 1);
}

TEST_F(CommandView, AppliesStepsAndSaysHowItFoundTheColorSpace) {
    write_lut(folder, 0.5);
    const std::string config = write_config(folder);
    const std::string half = folder.write(
        "half.cc", "<ColorCorrection id=\"a\"><SOPNode><Slope>0.5 0.5 0.5</Slope><Offset>0 0 0</Offset>"
                   "<Power>1 1 1</Power></SOPNode></ColorCorrection>");
    ASSERT_EQ(run({image, "--config", config, "--view", "Screen.Shown", "--cdl", half, "--why", "--size",
                   "32x16", "--screenshot", screenshot}),
              0)
        << err.str();
    EXPECT_NEAR(read_shown(screenshot).at(31, 0)[0], 255 * 1.5 * 0.5 * 0.5, 1);
    EXPECT_THAT(out.str(),
                HasSubstr("source:        lin, assumed: the role scene_linear, for float pixels\n"));
    EXPECT_EQ(run({image, "--config", config, "--from", "lin", "--why", "--screenshot", screenshot}), 0);
    EXPECT_THAT(out.str(), HasSubstr("source:        lin, from --from\n"));
    EXPECT_EQ(run({image, "--config", config, "--strict", "--screenshot", screenshot}), 1);
    EXPECT_EQ(run({image, "--config", config, "--look", "none", "--screenshot", screenshot}), 1);
    EXPECT_THAT(err.str(), HasSubstr("no look 'none'"));
}

TEST_F(CommandView, InvertsAView) {
    SKIP_WHERE_LISTED();
    write_lut(folder, 0.5);
    const std::string config = write_config(folder);
    ASSERT_EQ(
        run({image, "--config", config, "--inverse-view", "Screen.Shown", "--display", "Screen", "--view",
             "Raw", "--exposure", "-2", "--size", "32x16", "--why", "--screenshot", screenshot}),
        0)
        << err.str();
    EXPECT_THAT(out.str(), HasSubstr("source:        inverse of Screen.Shown, from --inverse-view\n"));
    const ShownImage shown = read_shown(screenshot);
    for (const int x : {4, 12, 20}) // the red of the image is 1.5 * x / 31, of which the view shows half
        EXPECT_NEAR(shown.at(x, 0)[0], 255 * 1.5 * x / 31 * 2 / 4, 1) << x;
    EXPECT_THAT(err.str(), HasSubstr("image.exr: inverse of Screen.Shown (chosen)"));
}

TEST_F(CommandView, FailsWithOneForWhatIsNotThere) {
    EXPECT_EQ(run({folder.file("none.exr"), "--screenshot", screenshot}), 1);
    EXPECT_THAT(err.str(), HasSubstr("none.exr"));
    EXPECT_EQ(run({image, "--view", "Tavelion.sRGV", "--screenshot", screenshot}), 1);
    EXPECT_THAT(err.str(), HasSubstr("did you mean 'Tavelion.sRGB'"));
    EXPECT_EQ(run({image, "--config", folder.file("none.ocio"), "--screenshot", screenshot}), 1);
    EXPECT_EQ(run({image, "--script", folder.file("none.txt"), "--no-window"}), 1);
    EXPECT_EQ(run({image, "--script", folder.get_path(), "--no-window"}), 1);
    EXPECT_EQ(run({image, "--screenshot", folder.file("screenshot.unknown")}), 1);
    EXPECT_FALSE(folder.exists("screenshot.png"));
}

TEST_F(CommandView, FailsWithOneAndSaysWhyWhenTheViewCannotBeMade) {
    const std::string config = write_config(folder); // Its LUT is missing.
    EXPECT_EQ(run({image, "--config", config, "--view", "Screen.Shown", "--screenshot", screenshot}), 1);
    EXPECT_THAT(err.str(), HasSubstr("shown.spi1d"));
    EXPECT_FALSE(folder.exists("screenshot.png"));
}

TEST_F(CommandView, IsNotKeptFromAScreenshotByAViewThatItShowsNoMore) {
    const std::string config = write_config(folder); // Its LUT is missing.
    const std::string script =
        folder.write("tour.txt", "second-view Screen.Shown\nlayout wipe\nlayout single\n");
    EXPECT_EQ(run({image, "--config", config, "--view", "Screen.Raw", "--script", script, "--screenshot",
                   screenshot}),
              0)
        << err.str();
    EXPECT_TRUE(folder.exists("screenshot.png"));
}

TEST_F(CommandView, ZoomsIntoTheMiddle) {
    ASSERT_EQ(run({image, "--size", "32x16", "--view", "Tavelion.linear", "--zoom", "8", "--screenshot",
                   screenshot}),
              0)
        << err.str();
    const ShownImage shown = read_shown(screenshot);
    EXPECT_EQ(shown.at(8, 8), shown.at(15, 15)) << "one pixel of the image";
    EXPECT_NEAR(shown.at(31, 0)[0] - shown.at(0, 0)[0], 255 * 1.5 * 3 / 31, 3) << "four pixels side by side";
}

TEST_F(CommandView, StepsThroughTheImagesInTheirOrder) {
    const std::string second = folder.file("second.exr"), third = folder.file("third.exr");
    write_ramps(second, 8, 8);
    write_ramps(third, 8, 8);
    const std::string script = folder.write("tour.txt", "print\nnext\nprint\nnext\nprint\n");
    ASSERT_EQ(run({image, second, third, "--script", script, "--no-window"}), 0) << err.str();
    const std::string text = out.str();
    EXPECT_LT(text.find("image: " + image), text.find("image: " + second));
    EXPECT_LT(text.find("image: " + second), text.find("image: " + third));
    EXPECT_NE(text.find("image: " + third), std::string::npos);
}

TEST_F(CommandView, ReadsTheImagesThatItShowsAndNoOthers) {
    const std::string broken = folder.write("broken.exr", "no image");
    EXPECT_EQ(run({image, broken, "--size", "32x16", "--screenshot", screenshot}), 0) << err.str();
    EXPECT_EQ(run({broken, image, "--size", "32x16", "--screenshot", screenshot}), 1);
    EXPECT_THAT(err.str(), HasSubstr("broken.exr"));
    const std::string script = folder.write("tour.txt", "next\nprint\nnext\nprint\n");
    EXPECT_EQ(run({image, broken, "--script", script, "--no-window"}), 0) << err.str();
    EXPECT_THAT(out.str(), HasSubstr("error: cannot read '" + broken + "'"));
}

TEST_F(CommandView, FailsWithTwoForAWrongCommandLine) {
    EXPECT_EQ(run({}), 2);
    EXPECT_EQ(run({image, "--size", "big", "--screenshot", screenshot}), 2);
    EXPECT_EQ(run({image, "--size", "0x10", "--screenshot", screenshot}), 2);
    EXPECT_EQ(run({image, "--no-window"}), 2);
    EXPECT_EQ(run({image, "--zoom", "-3", "--screenshot", screenshot}), 2);
    EXPECT_EQ(run({image, "--zoom", "nan", "--screenshot", screenshot}), 2);
    EXPECT_EQ(run({image, "--zoom", "inf", "--screenshot", screenshot}), 2);
    EXPECT_EQ(run({image, "--exposure", "nan", "--screenshot", screenshot}), 2);
    EXPECT_FALSE(folder.exists("screenshot.png"));
    EXPECT_EQ(run({image, "--script", folder.write("bad.txt", "fly"), "--no-window"}), 2);
}

TEST_F(CommandView, SaysWhatToDoWhereNoWindowCanBeOpened) {
    EnvGuard no_display("DISPLAY");
    EnvGuard no_wayland("WAYLAND_DISPLAY");
    EXPECT_EQ(run({image}), 1);
    EXPECT_THAT(err.str(), HasSubstr("--screenshot"));
    EXPECT_EQ(run({image, "--json-diagnostics"}), 1);
    EXPECT_THAT(err.str(), HasSubstr("\"display-missing\""));
}

TEST_F(CommandView, RunsAScriptWithoutAWindow) {
    const std::string script =
        folder.write("tour.txt", "view Tavelion.linear\nprint\nscreenshot " + screenshot + "\nquit\n");
    EXPECT_EQ(run({image, "--script", script, "--no-window"}), 0) << err.str();
    EXPECT_THAT(out.str(), HasSubstr("view: Tavelion.linear"));
    EXPECT_TRUE(folder.exists("screenshot.png"));
}

} // namespace
