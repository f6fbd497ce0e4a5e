#include <grp.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>

#include <nlohmann/json.hpp>

#include "diagnostics/failure.h"
#include "tests/tool/configs.h"
#include "tests/tool/program_copy.h"
#include "tests/tool/program_runs.h"
#include "tests/tool/tool_fixture.h"
#include "workflow/program_output.h"
#include "workflow/setup_report.h"

namespace {

using testing::AllOf;
using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;

class Doctor : public ToolTest {
protected:
    /// The item of that name, or null.
    static nlohmann::json find(const nlohmann::json& report, const std::string& section,
                               const std::string& name) {
        for (const auto& item : report.at(section))
            if (item.at("name") == name)
                return item;
        return {};
    }
    nlohmann::json get_report(const std::vector<std::string>& more = {}) {
        std::vector<std::string> arguments = {"doctor", "--json"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        const ToolRun result = run(arguments);
        nlohmann::json report = nlohmann::json::parse(result.out);
        EXPECT_EQ(result.code, report.at("ok") ? 0 : 1);
        return report;
    }
};

TEST_F(Doctor, FindsNoErrorWhereNothingIsBroken) {
    const ToolRun result = run({"doctor"});
    EXPECT_THAT(result, Succeeds());
    EXPECT_THAT(result.out,
                AllOf(HasSubstr("libraries\n  colorio  "), ContainsRegex("\n  OpenColorIO +[12][.]"),
                      ContainsRegex("\n  OpenImageIO +[2-9][.]"), ContainsRegex("\n  SIMD code +[A-Zn]"),
                      HasSubstr("\nfolders\n"), HasSubstr(path("config/qb_colorio")),
                      HasSubstr(path("cache/qb_colorio")), HasSubstr("\nenvironment\n"),
                      HasSubstr("preferences.yaml (does not exist; the defaults are used)"),
                      ContainsRegex("in use +the built-in config\n"), HasSubstr("3 color spaces, 3 views"),
                      HasSubstr("\nopengl\n"), Not(HasSubstr("error: "))));
}

TEST_F(Doctor, NamesABrokenConfigWhereItComesFromAndStillReportsTheRest) {
    folder.write("broken.ocio", "ocio_profile_version: 1\ncolorspaces: [\n");
    const ToolRun given = run({"doctor", "--config", path("broken.ocio")});
    EXPECT_EQ(given.code, 1);
    EXPECT_THAT(given.out,
                AllOf(ContainsRegex("in use +.*broken.ocio [(]from file[)]\n    error: .*broken.ocio"),
                      HasSubstr("\nopengl\n"), HasSubstr("\nfolders\n")));
    ocio.set(path("missing.ocio"));
    const nlohmann::json report = get_report();
    const nlohmann::json item = find(report, "config", "in use");
    EXPECT_EQ(item.at("value"), path("missing.ocio") + " (from $OCIO)");
    EXPECT_EQ(item.at("problem").at("code"), "config-missing");
    EXPECT_THAT(item.at("problem").at("hint"), HasSubstr("set OCIO"));
    EXPECT_EQ(find(report, "environment", "OCIO").at("value"), path("missing.ocio"));
}

TEST_F(Doctor, DescribesAGoodConfigOfThePreferences) {
    folder.write("show.ocio", SHOW_CONFIG);
    ASSERT_THAT(run({"prefs", "set", "color_space_file_path", path("show.ocio")}), Succeeds());
    ASSERT_THAT(run({"prefs", "set", "use_color_space_file", "true"}), Succeeds());
    const nlohmann::json report = get_report();
    EXPECT_EQ(find(report, "config", "in use").at("value"), path("show.ocio") + " (from preferences)");
    EXPECT_TRUE(report.at("ok"));
    EXPECT_THAT(find(report, "preferences", "file").at("value"), HasSubstr("(mode 0600, owner "));
}

TEST_F(Doctor, FindsFoldersThatCannotBeMade) {
    folder.write("file", "in the way");
    const EnvGuard config("XDG_CONFIG_HOME", path("file/config"));
    const ToolRun settings = run({"doctor"});
    EXPECT_EQ(settings.code, 1);
    EXPECT_THAT(settings.out,
                AllOf(HasSubstr("    error: cannot write to the settings folder: '" + path("file") +
                                "' is not a folder\n    hint: set XDG_CONFIG_HOME"),
                      HasSubstr("\nopengl\n")));
    const EnvGuard good("XDG_CONFIG_HOME", path("config"));
    const EnvGuard cache("XDG_CACHE_HOME", path("file/cache"));
    const ToolRun cached = run({"doctor"});
    EXPECT_EQ(cached.code, 0) << "commands work with a temporary folder";
    EXPECT_THAT(cached.out, HasSubstr("    warning: cannot write to the cache folder: '" + path("file")));
}

TEST_F(Doctor, FindsProblemsOfTheEnvironment) {
    const EnvGuard unknown("COLORIO_FASTPATH", "0"), slow("COLORIO_FAST_PATH", "0"),
        relative("XDG_CACHE_HOME", "cache");
    const nlohmann::json report = get_report();
    EXPECT_EQ(find(report, "environment", "COLORIO_FASTPATH").at("problem").at("hint"),
              "did you mean 'COLORIO_FAST_PATH'?");
    EXPECT_THAT(find(report, "environment", "COLORIO_FAST_PATH").at("problem").at("message"),
                HasSubstr("SIMD code is disabled"));
    EXPECT_THAT(find(report, "environment", "XDG_CACHE_HOME").at("problem").at("message"),
                HasSubstr("not an absolute path"));
}

TEST_F(Doctor, FindsDamagedAndUnprotectedPreferences) {
    folder.write("config/qb_colorio/preferences.yaml", "a: [b\n");
    std::filesystem::permissions(path("config/qb_colorio/preferences.yaml"), std::filesystem::perms(0666));
    const ToolRun result = run({"doctor"});
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.out,
                AllOf(HasSubstr("(mode 0666, owner "), HasSubstr("warning: other users can change"),
                      HasSubstr("hint: chmod go-w"), ContainsRegex("contents *\n    error: ")));
}

/// As a user whom the system does not know.
ToolRun diagnose_as_another(const TempDir& folder) {
    constexpr uid_t UNKNOWN = 70123;
    return run_program(COLORIO_PROGRAM, {"doctor", "--json"}, folder, [] {
        if (setgroups(0, nullptr) != 0 || setresuid(UNKNOWN, UNKNOWN, UNKNOWN) != 0)
            _exit(126);
    });
}

TEST_F(Doctor, WorksWithoutAHome) {
    const EnvGuard home("HOME"), config("XDG_CONFIG_HOME"), cache("XDG_CACHE_HOME");
    const ToolRun result = diagnose_as_another(folder);
    if (result.code > 1)
        GTEST_SKIP() << "another user may not run " << COLORIO_PROGRAM;
    const nlohmann::json report = nlohmann::json::parse(result.out);
    EXPECT_EQ(result.code, 0) << result;
    EXPECT_EQ(find(report, "folders", "settings").at("problem").at("code"), "home-missing");
    EXPECT_EQ(find(report, "preferences", "file").at("problem").at("severity"), "warning");
    EXPECT_EQ(find(report, "config", "in use").at("value"), "the built-in config");
}

TEST_F(Doctor, FindsFoldersThatThePermissionsProtect) {
    std::filesystem::create_directory(path("config"));
    std::filesystem::permissions(folder.get_path(), std::filesystem::perms(0755));
    const ToolRun result = diagnose_as_another(folder);
    if (result.code > 1)
        GTEST_SKIP() << "another user may not run " << COLORIO_PROGRAM;
    EXPECT_EQ(result.code, 1);
    const nlohmann::json item = find(nlohmann::json::parse(result.out), "folders", "settings");
    EXPECT_EQ(item.at("problem").at("message"),
              "cannot write to the settings folder: '" + path("config") + "': Permission denied");
}

TEST_F(Doctor, FindsACacheOfAnotherUser) {
    constexpr uid_t ANOTHER = 70124;
    std::filesystem::create_directories(path("cache/qb_colorio"));
    if (chown(path("cache/qb_colorio").c_str(), ANOTHER, static_cast<gid_t>(-1)) != 0)
        GTEST_SKIP() << "only the superuser can give a folder to another user";
    const nlohmann::json problem = find(get_report(), "folders", "cache").at("problem");
    EXPECT_EQ(problem.at("severity"), "warning");
    EXPECT_THAT(problem.at("message"), HasSubstr("belongs to user 70124"));
}

TEST_F(Doctor, SaysWhyThereIsNoOpenGl) {
    const EnvGuard vendors("__EGL_VENDOR_LIBRARY_DIRS", path("nothing"));
    const ToolRun result = run_program(COLORIO_PROGRAM, {"doctor"}, folder);
    EXPECT_EQ(result.code, 0) << "images are converted without it" << result;
    EXPECT_THAT(result.out,
                ContainsRegex("opengl\n  renderer +none\n    warning: .*EGL.*\n    hint: install "));
}

TEST_F(Doctor, ReportsAMissingACrashingAndAnUnloadableProgramForImages) {
    const ProgramCopy copy(folder);
    const auto diagnose = [&] { return run_program(copy.get_path(), {"doctor"}, folder); };
    const std::string program = "'" + path("libexec/qb_colorio/colorio-images") + "'";
    EXPECT_THAT(diagnose().out, HasSubstr("error: cannot run " + program + ": No such file or directory"));
    copy.add_image_program("kill -SEGV $$\n");
    EXPECT_THAT(diagnose().out, HasSubstr("error: " + program + " crashed: Segmentation fault"));
    copy.add_image_program("echo 'error while loading shared libraries: libx.so' >&2; exit 127\n");
    const ToolRun result = diagnose();
    EXPECT_THAT(result.out, AllOf(HasSubstr("error: " + program +
                                            " failed: error while loading shared libraries: libx.so\n"),
                                  HasSubstr("in use  ")));
    EXPECT_EQ(result.code, 1);
}

TEST(SetupReport, PassesThroughTextAmongOtherLines) {
    const workflow::SetupReport report = {
        {"a",
         {{"name", "two\nlines", {}},
          {"broken", "",
           with_hint(diagnostics::make_warning(diagnostics::Code::GPU_UNAVAILABLE, "no\tGL"),
                     "install it")}}},
        {"b", {}}};
    const workflow::SetupReport read =
        workflow::parse_report("libEGL warning: x\n" + workflow::format_report(report) + "colorio-item\n");
    ASSERT_EQ(read.size(), 2u);
    ASSERT_EQ(read[0].items.size(), 2u);
    EXPECT_EQ(read[0].items[0].value, "two lines");
    EXPECT_EQ(read[0].items[1].problem->code, diagnostics::Code::GPU_UNAVAILABLE);
    EXPECT_EQ(read[0].items[1].problem->severity, diagnostics::Severity::WARNING);
    EXPECT_EQ(read[0].items[1].problem->message, "no GL");
    EXPECT_EQ(read[0].items[1].problem->hint, "install it");
    EXPECT_EQ(read[1].name, "b");
}

TEST(ProgramOutput, EndsAProgramThatGivesNoAnswer) {
    using std::chrono::milliseconds;
    EXPECT_EQ(workflow::read_program_output("/bin/sh", {"-c", "echo a; echo b >&2"}, milliseconds(60000)),
              "a\nb\n");
    try {
        workflow::read_program_output("/bin/sh", {"-c", "exec sleep 1000"}, milliseconds(50));
        FAIL() << "it came back";
    } catch (const diagnostics::Failure& failure) {
        EXPECT_THAT(failure.what(), HasSubstr("was ended: no answer within"));
    }
}

} // namespace
