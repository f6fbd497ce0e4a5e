#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <streambuf>

#include "tests/tool/tool_fixture.h"
#include "tool/program.h"

namespace {

using testing::HasSubstr;
using testing::IsEmpty;

/// Results that cannot be written.
class UnwritableOutput : public ToolTest {
protected:
    UnwritableOutput() {
        folder.write("grade.cc",
                     "<ColorCorrection id=\"shot\"><SOPNode><Slope>1 1 1</Slope><Offset>0 0 0</Offset>"
                     "<Power>1 1 1</Power></SOPNode></ColorCorrection>");
    }

    /// Commands that print something, one of each kind.
    std::vector<std::vector<std::string>> get_commands() const {
        return {{"--help"},
                {"--version"},
                {"convert", "--help"},
                {"list"},
                {"list", "spaces", "--json"},
                {"list", "views"},
                {"explain", "sRGB", "linear"},
                {"explain", "sRGB", "linear", "--json"},
                {"shader", "--from", "sRGB", "--to", "linear", "--output", path("shader")},
                {"check"},
                {"cdl", "list", path("grade.cc")},
                {"cdl", "show", path("grade.cc")},
                {"space", "list"},
                {"formats", "list"},
                {"prefs", "path"},
                {"prefs", "show"},
                {"legacy", "sRGB"}};
    }

    static std::string join(const std::vector<std::string>& words) {
        std::string line;
        for (const std::string& word : words)
            line += word + " ";
        return line;
    }

    /// Runs the program itself with that descriptor, or none for -1, as its standard output.
    ToolRun run_program(std::vector<std::string> arguments, int output) const {
        arguments.insert(arguments.begin(), COLORIO_PROGRAM);
        std::vector<char*> line;
        for (std::string& argument : arguments)
            line.push_back(argument.data());
        line.push_back(nullptr);
        const std::string messages = path("messages");
        const pid_t child = fork();
        if (child == 0) {
            const int errors = open(messages.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
            dup2(errors, STDERR_FILENO);
            close(STDOUT_FILENO);
            if (output >= 0)
                dup2(output, STDOUT_FILENO);
            execv(COLORIO_PROGRAM, line.data());
            _exit(127);
        }
        int status = 0;
        waitpid(child, &status, 0);
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status), "", folder.read("messages")};
    }
};

TEST_F(UnwritableOutput, OnAFullDiskFailsEveryCommandWithAReason) {
    const int full = open("/dev/full", O_WRONLY | O_CLOEXEC);
    ASSERT_GE(full, 0);
    for (const auto& command : get_commands())
        EXPECT_THAT(
            run_program(command, full),
            FailsWith(
                1, HasSubstr("colorio: error: cannot write to standard output: No space left on device\n")))
            << join(command);
    close(full);
}

TEST_F(UnwritableOutput, OfAClosedPipeFailsInsteadOfEndingTheProgram) {
    int ends[2];
    ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
    close(ends[0]);
    EXPECT_THAT(run_program({"list", "spaces"}, ends[1]),
                FailsWith(1, HasSubstr("colorio: error: cannot write to standard output: Broken pipe\n")));
    close(ends[1]);
}

TEST_F(UnwritableOutput, ThatIsClosedTouchesNoOtherFile) {
    EXPECT_THAT(
        run_program({"list", "spaces"}, -1),
        FailsWith(1, HasSubstr("colorio: error: cannot write to standard output: Bad file descriptor\n")));
}

TEST_F(UnwritableOutput, IsReportedOnce) {
    const int full = open("/dev/full", O_WRONLY | O_CLOEXEC);
    EXPECT_EQ(run_program({"list", "spaces"}, full).err,
              "colorio: error: cannot write to standard output: No space left on device\n");
    close(full);
}

TEST_F(UnwritableOutput, KeepsTheCodeOfWrongUsage) {
    const int full = open("/dev/full", O_WRONLY | O_CLOEXEC);
    EXPECT_EQ(run_program({"lst"}, full).code, 2);
    close(full);
}

/// Takes so many characters and no more.
class SmallBuffer : public std::streambuf {
public:
    explicit SmallBuffer(int room) : room(room) {}

protected:
    int_type overflow(int_type character) override { return room-- > 0 ? character : traits_type::eof(); }

private:
    int room;
};

TEST_F(UnwritableOutput, StopsACommandAtItsFirstLine) {
    SmallBuffer buffer(10);
    std::ostream out(&buffer);
    std::ostringstream err;
    EXPECT_EQ(tool::run({"list", "spaces"}, out, err), 1);
    EXPECT_EQ(err.str(), "colorio: error: cannot write to standard output\n");
}

} // namespace
