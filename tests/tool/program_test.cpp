#include "tests/tool/tool_fixture.h"

namespace {

using testing::AllOf;
using testing::ContainsRegex;
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

TEST_F(Program, SuggestsItsOwnOptionsBehindACommandToo) {
    EXPECT_THAT(run({"list", "--verison"}), FailsWith(2, "colorio: error: unknown option '--verison'\n"
                                                         "hint: did you mean 'colorio --version'?\n"));
    EXPECT_THAT(run({"list", "--verbsoe"}), FailsWith(2, HasSubstr("did you mean '--verbose'?")));
}

TEST_F(Program, NamesAnInvalidValueAndWhatIsValid) {
    const auto refuses = [&](const std::vector<std::string>& arguments, const std::string& words) {
        EXPECT_THAT(run(arguments), FailsWith(2, "colorio: error: " + words + "\nhint: see colorio " +
                                                     arguments.front() + " --help\n"));
    };
    refuses({"list", "nothing"}, "invalid value 'nothing' for what; choices: all, spaces, named-transforms, "
                                 "views, roles, cdls");
    refuses({"view", "a.exr", "--layout", "three"},
            "invalid value 'three' for --layout; choices: single, wipe, two, difference");
    for (const std::string threads : {"0", "1025"})
        refuses({"convert", "a.exr", "b.exr", "--threads=" + threads},
                "invalid value '" + threads + "' for --threads; range: 1 to 1024");
    for (const std::string threads : {"two", "1.5"})
        refuses({"convert", "a.exr", "b.exr", "--threads=" + threads},
                "invalid value '" + threads + "' for --threads; expected a whole number");
    refuses({"view", "a.exr", "--exposure", "bright"},
            "invalid value 'bright' for --exposure; expected a number");
}

TEST_F(Program, NamesMissingRepeatedAndUnexpectedArguments) {
    EXPECT_THAT(
        run({"convert", "a.exr", "b.exr", "c.exr"}),
        FailsWith(2, "colorio: error: unexpected argument 'c.exr'\nhint: see colorio convert --help\n"));
    EXPECT_THAT(run({"convert", "a.exr", "b.exr", "--from"}),
                FailsWith(2, "colorio: error: --from needs a value\nhint: see colorio convert --help\n"));
    EXPECT_THAT(run({"convert", "a.exr", "b.exr", "--lut", "a", "--lut", "b", "--lut"}),
                FailsWith(2, HasSubstr("--lut needs a value")));
    EXPECT_THAT(run({"convert", "a.exr", "b.exr", "--from", "a", "--from", "b"}),
                FailsWith(2, "colorio: error: --from can be given only once\n"
                             "hint: see colorio convert --help\n"));
}

TEST_F(Program, ShowsTheNamesAndChoicesOfValuesInItsHelp) {
    const std::string help = run({"convert", "--help"}).out;
    // Versions of the parser indent options by different numbers of spaces.
    EXPECT_THAT(help, AllOf(ContainsRegex("\n +--from NAME "), ContainsRegex("\n +--lut FILE "),
                            ContainsRegex("\n +--threads N "), ContainsRegex("\n +--context KEY=VALUE "),
                            ContainsRegex("\n  -d, *--depth [{]uint8,uint10,uint12,uint16,half,float[}] *\n"),
                            HasSubstr("\n  input        "), ContainsRegex("\n +--inverse-cdl  ")));
    for (const char* parsers_own : {"TEXT", "INT", "REQUIRED", "Excludes", "Needs"})
        EXPECT_EQ(help.find(parsers_own), std::string::npos) << parsers_own;
    EXPECT_THAT(run({"--help"}).out, AllOf(ContainsRegex("\n(Usage: )?colorio [[]OPTIONS[]] COMMAND\n"),
                                           HasSubstr("\nCommands:\n")));
    EXPECT_THAT(run({"shader", "--help"}).out, ContainsRegex("\n  -o, *--output FOLDER [(]required[)]"));
}

TEST_F(Program, NamesThePlainReasonOfANumberThatDoesNotFit) {
    for (const char* zoom : {"0", "-1", "nan", "inf", "1e999"})
        EXPECT_THAT(run({"view", "a.exr", std::string("--zoom=") + zoom}),
                    FailsWith(2, "colorio: error: invalid value '" + std::string(zoom) +
                                     "' for --zoom; expected a positive number\n"
                                     "hint: see colorio view --help\n"));
}

TEST_F(Program, SaysWhereToReadAboutWrongOptions) {
    EXPECT_THAT(run({"list", "--jsn"}),
                FailsWith(2, "colorio: error: unknown option '--jsn'\nhint: did you mean '--json'?\n"));
    EXPECT_THAT(run({"list", "colors"}), FailsWith(2, HasSubstr("colors")));
    EXPECT_THAT(run({"convert", "a.exr"}), FailsWith(2, HasSubstr("output")));
}

} // namespace
