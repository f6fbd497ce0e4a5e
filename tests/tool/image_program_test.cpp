// The two programs: `colorio`, and the one with all commands that it runs for images.

#include <cstdlib>

#include "tests/tool/images.h"
#include "tests/tool/program_copy.h"
#include "tests/tool/program_runs.h"
#include "tests/tool/tool_fixture.h"
#include "tool/exit_code.h"

namespace {

using testing::AllOf;
using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;

using ImageProgram = ToolTest;

TEST_F(ImageProgram, HasTheLibrariesThatColorioDoesNotLoad) {
    const EnvGuard trace("LD_TRACE_LOADED_OBJECTS",
                         "1"); // makes the loader list libraries in place of the program
    const std::string small = run_program(COLORIO_PROGRAM, {}, folder).out;
    EXPECT_THAT(small, AllOf(HasSubstr("libqb_colorio.so"), HasSubstr("libOpenColorIO")));
    for (const char* library : {"libOpenImageIO", "libepoxy", "libglfw", "liblcms2", "libEGL"})
        EXPECT_THAT(small, Not(HasSubstr(library)));
    EXPECT_THAT(run_program(COLORIO_IMAGE_PROGRAM, {}, folder).out, HasSubstr("libOpenImageIO"));
}

TEST_F(ImageProgram, GetsTheArgumentsInputAndOutputOfColorio) {
    write_image(path("in.exr"), make_image(1, 1, 3, OIIO::TypeHalf, {0.5f, 0.5f, 0.5f}));
    const ToolRun result =
        run_program(COLORIO_PROGRAM,
                    {"convert", path("in.exr"), path("a b.exr"), "--from", "linear", "--to", "sRGB"}, folder);
    EXPECT_THAT(result, Succeeds());
    EXPECT_TRUE(folder.exists("a b.exr"));
    EXPECT_THAT(run_program(COLORIO_PROGRAM, {"explain", "sRGB", "linear", "--json"}, folder).out,
                HasSubstr("\"source\": "));
    EXPECT_THAT(run_program(COLORIO_PROGRAM, {"explain", "sRBG", "linear"}, folder),
                FailsWith(1, HasSubstr("colorio: error: ")));
}

TEST_F(ImageProgram, IsNotNeededForOtherCommandsHelpAndWrongUses) {
    const ProgramCopy copy(folder);
    const auto run_copy = [&](const std::vector<std::string>& arguments) {
        return run_program(copy.get_path(), arguments, folder);
    };
    EXPECT_THAT(run_copy({"--version"}), Succeeds());
    EXPECT_THAT(run_copy({"list"}), Succeeds());
    EXPECT_THAT(run_copy({"view", "--help"}).out, HasSubstr("Commands of a script"));
    EXPECT_THAT(run_copy({"convert", "a.exr"}), FailsWith(2, HasSubstr("output")));
    EXPECT_THAT(run_copy({"convert", "a.exr", "b.exr"}),
                FailsWith(1, "colorio: error: cannot run '" + path("libexec/qb_colorio/colorio-images") +
                                 "': No such file or directory; is colorio installed completely?\n"));
}

TEST_F(ImageProgram, HasTheSameHelp) {
    for (const std::string command : {"convert", "explain", "shader", "view", "list"})
        EXPECT_EQ(run_program(COLORIO_PROGRAM, {command, "--help"}, folder).out,
                  run_program(COLORIO_IMAGE_PROGRAM, {command, "--help"}, folder).out);
}

TEST_F(ImageProgram, LibrariesAreNamedWithTheVersionsAtBuildTime) {
    EXPECT_THAT(
        run({"--version"}).out,
        AllOf(
            ContainsRegex("^colorio [0-9.]+\nOpenColorIO [0-9.]+\nOpenImageIO [0-9.]+ [(]at build time[)]\n"),
            ContainsRegex("Little CMS [0-9]"), ContainsRegex("zlib [0-9]"), ContainsRegex("GLFW [0-9]"),
            ContainsRegex("Dear ImGui [0-9a-z.]+ [(]at build time[)]\n$")));
}

} // namespace
