#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <fstream>

#include "files/interrupt_cleanup.h"
#include "files/replacement.h"
#include "tests/tool/images.h"
#include "tests/tool/tool_fixture.h"

namespace {

using files::InterruptCleanup;
using files::Replacement;

/// As images are written.
constexpr files::ReplacementRules WITH_PATH{std::nullopt, false, true};

using Interrupt = ToolTest;

/// Runs `work` in a child process that waits to be ended; answers the signal that ended it. The child says
/// through a pipe when it is ready for `number`.
template <class Work>
int interrupt(int number, const Work& work) {
    int ready[2];
    if (pipe(ready) != 0)
        throw std::runtime_error("no pipe");
    const pid_t child = fork();
    if (child < 0)
        throw std::runtime_error("no process"); // and no number either that kill() would take for all of them
    if (child == 0) {
        work([&] { (void)!write(ready[1], "r", 1); });
        for (;;)
            pause();
    }
    char byte;
    (void)!read(ready[0], &byte, 1);
    kill(child, number);
    int status = 0;
    waitpid(child, &status, 0);
    close(ready[0]);
    close(ready[1]);
    return WIFSIGNALED(status) ? WTERMSIG(status) : 0;
}

TEST_F(Interrupt, RemovesTheTemporaryFilesAndEndsTheProcessByItsSignal) {
    folder.write("old.txt", "old");
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        const int ended_by = interrupt(number, [&](const auto& be_ready) {
            const files::InterruptCleanup cleanup;
            const Replacement first(path("old.txt"), WITH_PATH);
            const Replacement second(path("new.txt"), WITH_PATH);
            std::ofstream(first.get_temporary_path()) << "half of it";
            be_ready();
            for (;;)
                pause();
        });
        EXPECT_EQ(ended_by, number);
        EXPECT_EQ(count_files(), 1u) << number;
        EXPECT_EQ(folder.read("old.txt"), "old");
    }
}

TEST_F(Interrupt, LeavesFilesThatTookTheirPlace) {
    interrupt(SIGINT, [&](const auto& be_ready) {
        const files::InterruptCleanup cleanup;
        Replacement file(path("new.txt"), WITH_PATH);
        std::ofstream(file.get_temporary_path()) << "whole";
        file.commit();
        be_ready();
        for (;;)
            pause();
    });
    EXPECT_EQ(folder.read("new.txt"), "whole");
    EXPECT_EQ(count_files(), 1u);
}

TEST_F(Interrupt, IsNotWatchedForAnyLongerThanAsked) {
    { const files::InterruptCleanup cleanup; }
    struct sigaction action;
    ASSERT_EQ(sigaction(SIGTERM, nullptr, &action), 0);
    EXPECT_EQ(action.sa_handler, SIG_DFL);
}

/// What the installed program answers, as a shell sees it.
int run_program(const std::vector<const char*>& arguments) {
    std::vector<char*> line = {const_cast<char*>(COLORIO_PROGRAM)};
    for (const char* argument : arguments)
        line.push_back(const_cast<char*>(argument));
    line.push_back(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        (void)!freopen("/dev/null", "w", stdout);
        (void)!freopen("/dev/null", "w", stderr);
        execv(COLORIO_PROGRAM, line.data());
        _exit(127);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST_F(Interrupt, LeavesTheProgramsExitCodesAlone) {
    EXPECT_EQ(run_program({"list"}), 0);
    EXPECT_EQ(run_program({"list", "--config", "/nowhere/show.ocio"}), 1);
    EXPECT_EQ(run_program({"lst"}), 2);
}

} // namespace
