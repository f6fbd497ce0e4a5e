#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <map>
#include <sstream>

#include "tests/viewer/desktop_user.h"
#include "tests/viewer/viewer_fixture.h"
#include "tests/viewer/virtual_display.h"

namespace {

using testing::HasSubstr;

constexpr int PANELS = 340;
constexpr int WIDTH = 300;
constexpr int HEIGHT = 460;

/// The program in its window on a display, with a user before it.
class ViewerOnADesktop : public ViewerTest {
protected:
    void SetUp() override {
        if (!VirtualDisplay::is_installed())
            GTEST_SKIP() << "Xvfb is not installed; apt-get install xvfb";
        display = std::make_unique<VirtualDisplay>();
        ASSERT_FALSE(display->get_name().empty()) << "Xvfb does not start";
        write_image(image, WIDTH, HEIGHT, [](int, int) { return Rgb{0.25f, 0.5f, 1}; });
        write_lut(folder, 0.5);
        config = write_config(folder);
        find_places();
        start();
        user = std::make_unique<DesktopUser>(display->get_name());
        ASSERT_TRUE(user->find_window(PANELS + WIDTH, HEIGHT)) << folder.read("output");
        ASSERT_TRUE(sees({0.25f, 0.5f, 1})) << folder.read("output");
    }

    void TearDown() override {
        if (process > 0) {
            kill(process, SIGKILL);
            waitpid(process, nullptr, 0);
        }
    }

    /// What there is to click, asked of a viewer without a window.
    void find_places() {
        const std::string script = folder.write("places.txt", "panels on\nclick View\nitems\n");
        const std::string command = QB_TOOL_PROGRAM " view " + image + " --no-prefs --config " + config +
                                    " --size 640x460 --no-window --script " + script + " > " +
                                    folder.file("places") + " 2> " + folder.file("output");
        EnvGuard sanitizer("ASAN_OPTIONS", "detect_leaks=0");
        ASSERT_EQ(std::system(command.c_str()), 0) << folder.read("output");
        std::istringstream lines(folder.read("places"));
        double x = 0, y = 0;
        for (std::string name; lines >> x >> y && std::getline(lines >> std::ws, name);)
            places[name] = {static_cast<int>(x), static_cast<int>(y)};
        ASSERT_EQ(places.count("Screen.Shown"), 1u) << folder.read("places");
    }

    /// Leaks are not looked for: the driver is unloaded with the window, so what it keeps counts as lost.
    void start() {
        process = fork();
        if (process != 0)
            return;
        setenv("DISPLAY", display->get_name().c_str(), 1);
        unsetenv("WAYLAND_DISPLAY");
        setenv("ASAN_OPTIONS", "detect_leaks=0", 1);
        setenv("LIBGL_ALWAYS_SOFTWARE", "1", 1);
        if (!freopen(folder.file("output").c_str(), "w", stderr))
            _exit(126);
        execl(QB_TOOL_PROGRAM, "colorio", "view", image.c_str(), "--no-prefs", "--config", config.c_str(),
              "--size", "640x460", nullptr);
        _exit(127);
    }

    void click(const std::string& name) {
        ASSERT_EQ(places.count(name), 1u) << name;
        user->click(places[name].first, places[name].second);
    }
    /// Waits until the whole image is seen in that color, of values up to 1.
    bool sees(const Rgb& color) {
        const Rgb shown = to_screen(color.data());
        return user->waits_to_see(PANELS + 5, 5, shown) &&
               user->waits_to_see(PANELS + WIDTH - 5, HEIGHT - 5, shown);
    }
    /// The program's exit status, when it ends.
    int wait_for_end() {
        int status = -1;
        waitpid(process, &status, 0);
        process = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    std::string image = folder.file("image.exr");
    std::string config;
    std::map<std::string, std::pair<int, int>> places;
    std::unique_ptr<VirtualDisplay> display;
    pid_t process = -1;
    std::unique_ptr<DesktopUser> user;
};

TEST_F(ViewerOnADesktop, DoesWhatItsUserDoes) {
    const auto [x, y] = places["Screen.Raw"];
    const Rgb before = user->see(x + 100, y);
    click("View");
    ASSERT_TRUE(user->waits_for_another(x + 100, y, before)) << "the menu opens";
    click("Screen.Shown");
    EXPECT_TRUE(sees({0.125f, 0.25f, 0.5f})) << "another view is chosen";
    user->press_key(']');
    user->press_key(']');
    EXPECT_TRUE(sees({0.25f, 0.5f, 1})) << "a stop more";
    user->press_key('[');
    user->press_key('[');
    EXPECT_TRUE(sees({0.125f, 0.25f, 0.5f}));

    write_lut(folder, 0.25);
    EXPECT_TRUE(sees({0.0625f, 0.125f, 0.25f})) << "the LUT was edited, nothing else happened";

    folder.write("shows/luts/shown.spi1d", "Version 1\nFrom 0 2\nLength 2\nComponents 1\n{\n0\n1\n}\n");
    folder.write("shows/other.ocio", folder.read("test.ocio"));
    EXPECT_TRUE(user->drop_file(folder.file("shows/other.ocio"), PANELS + 50, 50));
    EXPECT_TRUE(sees({0.125f, 0.25f, 0.5f})) << "the dropped configuration halves";

    const std::string other = folder.file("other.exr");
    write_image(other, WIDTH, HEIGHT, [](int, int) { return Rgb{1, 0.5f, 0}; });
    EXPECT_TRUE(user->drop_file(other, PANELS + 50, 50));
    EXPECT_TRUE(sees({0.5f, 0.25f, 0})) << "the dropped image";

    user->close_window();
    EXPECT_EQ(wait_for_end(), 0) << folder.read("output");
}

} // namespace
