#include "tests/tool/tool_fixture.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

using Program = ToolTest;

TEST_F(Program, WithoutACommandIsWrongUsage) {
    const ToolRun result = run({});
    EXPECT_THAT(result, FailsWith(2, HasSubstr("no command")));
    EXPECT_THAT(result.out, IsEmpty());
}

TEST_F(Program, AnswersAnUnknownCommandWithTheNearestOne) {
    EXPECT_THAT(run({"convrt", "a", "b"}),
                FailsWith(2, "colorio: error: unknown command 'convrt'\nhint: did you mean 'convert'?\n"));
}

TEST_F(Program, HelpsOnStandardOutput) {
    const ToolRun result = run({"--help"});
    EXPECT_THAT(result, Succeeds());
    EXPECT_THAT(result.out,
                AllOf(HasSubstr("list"), HasSubstr("convert"), HasSubstr("shader"), HasSubstr("check"),
                      HasSubstr("explain"), HasSubstr("COLORIO_FAST_PATH=0"), HasSubstr("Examples:")));
    EXPECT_THAT(result.err, IsEmpty());
}

TEST_F(Program, HelpsWithExamplesOnEveryCommand) {
    for (const std::string command : {"list", "convert", "explain", "shader", "check", "view"}) {
        const ToolRun result = run({command, "--help"});
        EXPECT_THAT(result, Succeeds()) << command;
        EXPECT_THAT(result.out, AllOf(HasSubstr("Examples:"), HasSubstr("colorio " + command))) << command;
    }
}

TEST_F(Program, TellsItsVersion) {
    const ToolRun result = run({"--version"});
    EXPECT_THAT(result, Succeeds());
    EXPECT_THAT(result.out, StartsWith("colorio "));
}

TEST_F(Program, AnswersAnUnknownOptionWithTheNearestOne) {
    const auto answers = [](const std::string& words) { return FailsWith(2, HasSubstr(words)); };
    EXPECT_THAT(run({"--verison"}), answers("unknown option '--verison'\nhint: did you mean '--version'?"));
    EXPECT_THAT(run({"--hepl", "list"}), answers("unknown option '--hepl'\nhint: did you mean '--help'?"));
    EXPECT_THAT(run({"check", "--confg=a.ocio"}),
                answers("unknown option '--confg'\nhint: did you mean '--config'?"));
    EXPECT_THAT(run({"cdl", "write", "a.cc", "--exakt"}),
                answers("unknown option '--exakt'\nhint: did you mean '--exact'?"))
        << "though --cdl is missing, too";
    EXPECT_THAT(run({"list", "--zzzzzz"}),
                answers("unknown option '--zzzzzz'\nhint: see colorio list --help"));
    EXPECT_THAT(run({"view", "a.exr", "--zoom", "2", "--layuot", "two"}), answers("'--layout'"));
}

TEST_F(Program, NamesThePlainReasonOfANumberThatDoesNotFit) {
    for (const char* zoom : {"0", "-1", "nan", "inf", "1e999", "wide", "1x"})
        EXPECT_THAT(run({"view", "a.exr", std::string("--zoom=") + zoom}),
                    FailsWith(2, "colorio: error: --zoom: '" + std::string(zoom) +
                                     "' is not a positive number\nhint: see colorio view --help\n"));
}

TEST_F(Program, SaysWhereToReadAboutWrongOptions) {
    EXPECT_THAT(run({"list", "--jsn"}),
                FailsWith(2, "colorio: error: unknown option '--jsn'\nhint: did you mean '--json'?\n"));
    EXPECT_THAT(run({"list", "colors"}), FailsWith(2, HasSubstr("colors")));
    EXPECT_THAT(run({"convert", "a.exr"}), FailsWith(2, HasSubstr("output")));
}

} // namespace
