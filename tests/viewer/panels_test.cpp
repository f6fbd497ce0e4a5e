#include "viewer/panels.h"

#include <filesystem>
#include <new>
#include <set>
#include <stdexcept>

#include "diagnostics/failure.h"
#include "tests/viewer/panels_fixture.h"
#include "viewer/attempt.h"
#include "viewer/fonts.h"

namespace {

using viewer::Layout;

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
    EXPECT_EQ(shown.size(), names.size()) << "each can be distinguished from the others in the closed list";
    click("CDL");
    shown.clear();
    for (const std::string& name : names)
        shown.insert(read_line(name));
    EXPECT_EQ(shown.size(), names.size()) << "and in the open one";
}

TEST_F(PanelsOfAViewer, ShowNamesOfOtherAlphabets) {
    if (viewer::find_system_font().empty())
        GTEST_SKIP() << "the system has no font in the standard folders";
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
    const auto code_of = [](const auto& change) { return viewer::find_error(change).value().code; };
    EXPECT_EQ(code_of([] { diagnostics::fail(diagnostics::Code::USAGE_REFUSED, "refused"); }),
              diagnostics::Code::USAGE_REFUSED);
    EXPECT_EQ(code_of([] { throw std::runtime_error("failed"); }), diagnostics::Code::LIBRARY_FAILURE);
    EXPECT_EQ(code_of([] { throw std::bad_alloc(); }), diagnostics::Code::OUT_OF_MEMORY);
    bool is_done = false;
    EXPECT_EQ(viewer::find_error([&] { is_done = true; }), std::nullopt);
    EXPECT_TRUE(is_done);
}

} // namespace
