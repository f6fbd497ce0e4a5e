// The installed program, several times at once and without a home.

#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tests/tool/tool_fixture.h"

namespace {

using testing::HasSubstr;

class Processes : public ToolTest {
protected:
    /// Starts the program; its messages go to the file `messages`.
    pid_t start(const std::vector<std::string>& arguments, const std::string& messages) {
        std::vector<char*> line = {const_cast<char*>(COLORIO_PROGRAM)};
        for (const std::string& argument : arguments)
            line.push_back(const_cast<char*>(argument.c_str()));
        line.push_back(nullptr);
        const std::string err = path(messages);
        const pid_t child = fork();
        if (child == 0) {
            (void)!freopen("/dev/null", "w", stdout);
            (void)!freopen(err.c_str(), "w", stderr);
            execv(COLORIO_PROGRAM, line.data());
            _exit(127);
        }
        return child;
    }
    static int wait_for(pid_t child) {
        int status = 0;
        return waitpid(child, &status, 0) == child && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
};

TEST_F(Processes, ThatAddSpacesAtOnceKeepThemAll) {
    folder.write("half.spi1d", "Version 1\nFrom 0.0 1.0\nLength 2\nComponents 1\n{\n0.0\n0.5\n}\n");
    std::vector<pid_t> children;
    for (int i = 1; i <= 6; ++i) {
        const std::string number = std::to_string(i);
        children.push_back(start({"space", "add", "space" + number, "--lut", path("half.spi1d")}, number));
    }
    for (const pid_t child : children)
        EXPECT_EQ(wait_for(child), 0);
    const std::string preferences = folder.read("config/qb_colorio/preferences.yaml");
    for (int i = 1; i <= 6; ++i)
        EXPECT_THAT(preferences, HasSubstr("space" + std::to_string(i)));
}

TEST_F(Processes, WithoutAHomeWorkInATemporaryFolderAndSaySo) {
    std::filesystem::create_directory(path("tmp"));
    const EnvGuard home("HOME", "/proc/nowhere");
    const EnvGuard cache("XDG_CACHE_HOME");
    const EnvGuard config("XDG_CONFIG_HOME");
    const EnvGuard temporary("TMPDIR", path("tmp"));
    EXPECT_EQ(wait_for(start({"explain", "sRGB", "linear"}, "messages")), 0);
    EXPECT_THAT(folder.read("messages"), HasSubstr("set XDG_CACHE_HOME to a folder that can be written"));
    EXPECT_TRUE(std::filesystem::is_empty(path("tmp")));
    EXPECT_EQ(wait_for(start({"formats", "set", "Targa", "--space", "linear"}, "messages")), 1);
    EXPECT_THAT(folder.read("messages"), HasSubstr("cannot save '/proc/nowhere/.config"));
}

} // namespace
