// The program where the system gives it little: threads, file sizes, notifications, a home.

#include <grp.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "tests/tool/images.h"
#include "tests/tool/tool_fixture.h"

namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

/// Files of the program go to the folder for temporary ones.
struct WithoutHome {
    explicit WithoutHome(const std::string& temporary_folder) : temporary("TMPDIR", temporary_folder) {}

    EnvGuard home{"HOME", "/proc/nowhere"};
    EnvGuard cache{"XDG_CACHE_HOME"};
    EnvGuard config{"XDG_CONFIG_HOME"};
    EnvGuard temporary;
};

class ScarceSystem : public ToolTest {
protected:
    /// Runs the program in a child process after `prepare`, which may end it.
    ToolRun run_program(std::vector<std::string> arguments, const std::function<void()>& prepare) {
        arguments.insert(arguments.begin(), COLORIO_PROGRAM);
        std::vector<char*> line;
        for (std::string& argument : arguments)
            line.push_back(argument.data());
        line.push_back(nullptr);
        const std::string out = path("out.txt"), err = path("err.txt");
        const pid_t child = fork();
        if (child == 0) {
            (void)!freopen(out.c_str(), "w", stdout);
            (void)!freopen(err.c_str(), "w", stderr);
            prepare();
            execv(COLORIO_PROGRAM, line.data());
            _exit(127);
        }
        int status = 0;
        EXPECT_EQ(waitpid(child, &status, 0), child);
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status), folder.read("out.txt"),
                folder.read("err.txt")};
    }
    /// As a user without other processes, who may have `processes` of them, threads included.
    ToolRun run_with_few_threads(const std::vector<std::string>& arguments, unsigned int processes) {
        constexpr uid_t FIRST_UNUSED = 70000;
        constexpr unsigned int PATIENCE = 120; // seconds
        const uid_t user = FIRST_UNUSED + static_cast<uid_t>(getpid()) % 10000;
        return run_program(arguments, [user, processes] {
            alarm(PATIENCE); // ends a program that waits
            const rlimit limit = {processes, processes};
            if (setgroups(0, nullptr) != 0 || setresuid(user, user, user) != 0 ||
                setrlimit(RLIMIT_NPROC, &limit) != 0)
                _exit(126);
        });
    }

    /// Lets another user read and write below the folder. False when that user may not run the program.
    bool admit_another_user() {
        for (const char* name : {"tmp", "output"})
            EXPECT_EQ(mkdir(path(name).c_str(), 0777) | chmod(path(name).c_str(), 01777), 0);
        EXPECT_EQ(chmod(folder.get_path().c_str(), 0755), 0);
        return run_with_few_threads({"--version"}, 1000).code == 0;
    }

    /// The fewest threads with which the program with all commands starts: libraries that it is linked with
    /// start threads, too.
    unsigned int find_fewest_threads() {
        unsigned int least = 1;
        while (least < 100 && run_with_few_threads({"explain", "sRGB", "linear"}, least).code != 0)
            ++least;
        return least;
    }

    void write_gray(const std::string& name) {
        write_image(path(name),
                    make_image(64, 64, 3, OIIO::TypeFloat, std::vector<float>(64 * 64 * 3, 0.5f)));
    }

    EnvGuard sanitizer{"ASAN_OPTIONS", "detect_leaks=0"}; // which takes a thread at the end
};

/// The lines of `text` that name neither a file of the sequence nor its output.
std::vector<std::string> find_errors_without_file(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        if (line.find("error: ") != std::string::npos && line.find("/in.000") == std::string::npos &&
            line.find("/out.000") == std::string::npos)
            lines.push_back(line);
    return lines;
}

TEST_F(ScarceSystem, WithFewThreadsConvertsWithThoseAndNamesTheFileInEveryError) {
    if (geteuid() != 0)
        GTEST_SKIP() << "only the superuser can start a program as a user without processes";
    const WithoutHome environment(path("tmp"));
    if (!admit_another_user())
        GTEST_SKIP() << "another user may not run " << COLORIO_PROGRAM;
    for (const char* name : {"in.0001.exr", "in.0002.exr", "in.0003.exr"})
        write_gray(name);
    const unsigned int least = find_fewest_threads();
    for (const unsigned int more : {0u, 1u, 3u, 5u, 7u, 10u, 14u, 20u}) {
        const ToolRun run = run_with_few_threads({"convert", path("in.%04d.exr"), path("output/out.%04d.exr"),
                                                  "--frames", "1-3", "--from", "sRGB", "--to", "linear"},
                                                 least + more);
        EXPECT_THAT(find_errors_without_file(run.err), IsEmpty()) << more;
        // Libraries that do with fewer threads take the first ones; the reader is a process that has to
        // start.
        if (more < 10)
            EXPECT_TRUE(run.code == 0 || run.code == 1) << more << run;
        else
            EXPECT_EQ(run.code, 0) << more << run;
    }
}

TEST_F(ScarceSystem, WithFewThreadsTheShaderIsComparedOrAnError) {
    if (geteuid() != 0)
        GTEST_SKIP() << "only the superuser can start a program as a user without processes";
    const WithoutHome environment(path("tmp"));
    if (!admit_another_user())
        GTEST_SKIP() << "another user may not run " << COLORIO_PROGRAM;
    const unsigned int least = find_fewest_threads();
    for (const unsigned int more : {0u, 2u, 5u, 8u}) {
        const ToolRun run = run_with_few_threads(
            {"shader", "--from", "sRGB", "--to", "linear", "-o", path("output")}, least + more);
        EXPECT_TRUE(run.code == 0 || run.code == 1) << more << run;
    }
}

void limit_file_sizes(rlim_t bytes) {
    const rlimit limit = {bytes, bytes};
    setrlimit(RLIMIT_FSIZE, &limit);
}

TEST_F(ScarceSystem, AShaderBeyondTheLimitOnFileSizesIsAnError) {
    ASSERT_EQ(run_program({"explain", "sRGB", "linear"}, [] {}).code, 0) << "the built-in LUTs exist";
    const ToolRun run =
        run_program({"shader", "--from", "sRGB", "--to", "linear", "--output", path("shader")},
                    [] { limit_file_sizes(1024); });
    EXPECT_EQ(run.code, 1) << run;
    EXPECT_THAT(run.err, HasSubstr("error: "));
    EXPECT_THAT(run.err, HasSubstr("File too large"));
}

TEST_F(ScarceSystem, AnImageBeyondTheLimitOnFileSizesNamesTheLimitAndTheRemedy) {
    write_gray("in.0001.exr");
    ASSERT_EQ(run_program({"explain", "sRGB", "linear"}, [] {}).code, 0) << "the built-in LUTs exist";
    const ToolRun run =
        run_program({"convert", path("in.0001.exr"), path("out.exr"), "--from", "sRGB", "--to", "linear"},
                    [] { limit_file_sizes(1024); });
    EXPECT_EQ(run.code, 1) << run;
    EXPECT_THAT(run.err, HasSubstr("cannot read '" + path("in.0001.exr") + "': the file size limit"));
    EXPECT_THAT(run.err, HasSubstr("ulimit -f"));
}

/// Lets the system refuse to report changes of files, as when its limit on watchers is reached.
void refuse_file_notification() {
    sock_filter code[] = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, __NR_inotify_init1, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EMFILE),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    };
    const sock_fprog program = {std::size(code), code};
    if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 ||
        prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) != 0)
        _exit(126);
}

TEST_F(ScarceSystem, TheViewerStartsWithAWarningWhereItIsNotNotifiedOfChanges) {
    constexpr char WARNING[] = "warning: changed files are not reloaded";
    write_gray("in.0001.exr");
    const std::vector<std::string> line = {"view",  path("in.0001.exr"), "--size",
                                           "32x32", "--screenshot",      path("shown.png")};
    const ToolRun run = run_program(line, refuse_file_notification);
    EXPECT_THAT(run.err, HasSubstr(WARNING));
    EXPECT_THAT(run.err, HasSubstr("fs.inotify.max_user_instances"));
    EXPECT_THAT(run_program(line, [] {}).err, Not(HasSubstr(WARNING)));
}

TEST_F(ScarceSystem, WithoutAHomeEveryCommandNamesTheTemporaryFolderOnce) {
    const EnvGuard home("HOME", "/proc/nowhere");
    const EnvGuard cache("XDG_CACHE_HOME");
    const EnvGuard temporary("TMPDIR", path("tmp"));
    std::filesystem::create_directory(path("tmp"));
    folder.write("half.spi1d", "Version 1\nFrom 0.0 1.0\nLength 2\nComponents 1\n{\n0.0\n0.5\n}\n");
    folder.write("warm.cc", "<ColorCorrection id=\"warm\"><SOPNode><Slope>2 2 2</Slope><Offset>0 0 0</Offset>"
                            "<Power>1 1 1</Power></SOPNode></ColorCorrection>");
    folder.write("newer.ocio", "ocio_profile_version: 2.999\n");
    write_gray("in.exr");
    const std::vector<std::vector<std::string>> lines = {
        {"list", "spaces"},
        {"list", "views", "--json"},
        {"convert", path("in.exr"), path("out.exr"), "--from", "sRGB", "--to", "linear"},
        {"explain", "sRGB", "linear"},
        {"shader", "--from", "sRGB", "--to", "linear", "--output", path("shader")},
        {"check"},
        {"check", "--json"},
        {"check", "--config", path("newer.ocio")},
        {"formats", "list"},
        {"formats", "check"},
        {"formats", "set", "Targa", "--space", "linear"},
        {"space", "add", "half", "--lut", path("half.spi1d")},
        {"space", "list"},
        {"space", "remove", "half"},
        {"cdl", "add", "warm", path("warm.cc")},
        {"prefs", "show"},
        {"legacy", "linear"},
    };
    constexpr char NOTE[] = "set XDG_CACHE_HOME to a folder";
    const auto expect_note = [&](const std::string& line, const ToolRun& result) {
        const std::string said = result.out + result.err;
        EXPECT_NE(said.find(NOTE), said.npos) << line << result;
        EXPECT_EQ(said.find(NOTE), said.rfind(NOTE)) << line << result;
    };
    for (const std::vector<std::string>& line : lines)
        expect_note(line[0] + " " + line.back(), run(line));
    expect_note(
        "view",
        run_program({"view", path("in.exr"), "--size", "32x32", "--screenshot", path("shown.png")}, [] {}));
}

} // namespace
