#include <cstdlib>

#include "colorio/color_io_converter.h"
#include "tests/viewer/viewer_fixture.h"
#include "tests/viewer/virtual_display.h"

namespace {

using testing::HasSubstr;

/// Width of the panels beside the image.
constexpr int PANELS = 340;
constexpr int WIDTH = 64;
constexpr int HEIGHT = 48;

/// The program itself, in a window.
class WindowOfTheViewer : public ViewerTest {
protected:
    void SetUp() override {
        if (!VirtualDisplay::is_installed())
            GTEST_SKIP() << "Xvfb is not installed; apt-get install xvfb";
        display = std::make_unique<VirtualDisplay>();
        ASSERT_FALSE(display->get_name().empty()) << "Xvfb does not start";
        write_ramps(image, WIDTH, HEIGHT);
    }

    /// Exit status of `colorio view`; what it prints goes to the file "output". Leaks are not looked for: the
    /// driver is unloaded with the window, so what it keeps counts as lost.
    int view(const std::string& arguments) {
        EnvGuard on("DISPLAY", display->get_name());
        EnvGuard no_wayland("WAYLAND_DISPLAY");
        EnvGuard sanitizer("ASAN_OPTIONS", "detect_leaks=0");
        EnvGuard software("LIBGL_ALWAYS_SOFTWARE", "1");
        return std::system(
            (QB_TOOL_PROGRAM " view " + image + " " + arguments + " > " + folder.file("output") + " 2>&1")
                .c_str());
    }

    std::string image = folder.file("ramps.exr");
    std::unique_ptr<VirtualDisplay> display;
};

TEST_F(WindowOfTheViewer, ShowsWhatTheCpuConvertsWhenTheViewIsSwitched) {
    const std::string screenshot = folder.file("screenshot.png");
    const std::string script =
        folder.write("tour.txt", "view Tavelion.Cineon\nclick View\nclick Tavelion.sRGB\nscreenshot " +
                                     screenshot + "\nprint\nquit\n");
    ASSERT_EQ(view("--size 404x300 --script " + script), 0) << folder.read("output");
    EXPECT_THAT(folder.read("output"), HasSubstr("view: Tavelion.sRGB"));
    const ShownImage shown = read_shown(screenshot);
    ASSERT_EQ(shown.width, PANELS + WIDTH);
    ASSERT_EQ(shown.height, 300);

    const workflow::LiveConfig live_config(workflow::SessionOptions{});
    ColorIOConverter converter;
    ASSERT_TRUE(converter.configure_for_display("linear", "Tavelion.sRGB"));
    viewer::Image ramps = viewer::load_image(image);
    ASSERT_TRUE(converter.convert_buffer(ramps.rgba.data(), WIDTH, HEIGHT, 4));
    for (int y = 0; y < HEIGHT; ++y)
        for (int x = 0; x < WIDTH; ++x) {
            const Rgb expected = to_screen(ramps.at(x, y));
            const Rgb color = shown.at(PANELS + x, (300 - HEIGHT) / 2 + y);
            for (size_t i = 0; i < 3; ++i)
                EXPECT_NEAR(color[i], expected[i], 3) << "channel " << i << " at " << x << ", " << y;
        }
}

TEST_F(WindowOfTheViewer, EndsWithAMessageWhenItsScriptFails) {
    const std::string script = folder.write("tour.txt", "view Tavelion.nothing\n");
    EXPECT_NE(view("--script " + script), 0);
    EXPECT_THAT(folder.read("output"), HasSubstr("tour.txt:1: no view 'Tavelion.nothing'"));
}

} // namespace
