#include <set>

#include <nlohmann/json.hpp>

#include "colorio/ocio/types.h"
#include "tests/colorio/library_differences.h"
#include "tests/tool/configs.h"
#include "tests/tool/diagnostics_fixture.h"
#include "tests/tool/tool_fixture.h"

namespace {

using library_differences::expected;
using nlohmann::json;
using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class Check : public ToolTest {
protected:
    /// A configuration with further color spaces; writes it as "show.ocio".
    void write_config(const std::string& more_spaces = {}) {
        folder.write("show.ocio", SHOW_CONFIG + more_spaces);
    }

    static std::string space(const std::string& name, const std::string& transform) {
        return "  - !<ColorSpace>\n    name: " + name + "\n    from_reference: " + transform + "\n";
    }

    ToolRun check(std::vector<std::string> more = {}) {
        more.insert(more.begin(), {"check", "--config", path("show.ocio")});
        return run(more);
    }

    json check_json(int code) {
        const ToolRun result = check({"--json"});
        EXPECT_EQ(result.code, code) << result.out;
        return json::parse(result.out);
    }
};

TEST_F(Check, FindsNothingWrongWithTheBuiltinConfiguration) {
    const ToolRun result = run({"check"});
    EXPECT_THAT(result, Succeeds());
    EXPECT_EQ(result.out,
              "Config: the built-in config\n"
              "Color spaces tried to and from 'Tavelion|linear': 2. Views tried: 3. Failures: none.\n");
}

TEST_F(Check, FindsNothingWrongWithAGoodConfiguration) {
    write_config();
    const json answer = check_json(0);
    EXPECT_EQ(answer.at("ok"), true);
    EXPECT_EQ(answer.at("loaded"), true);
    EXPECT_EQ(answer.at("scene_linear"), "lin");
    EXPECT_EQ(answer.at("spaces_tried"), 2);
    EXPECT_EQ(answer.at("views_tried"), 3);
    EXPECT_EQ(answer.at("failures"), json::array());
    EXPECT_EQ(answer.at("config").at("source"), "file");
}

TEST_F(Check, ListsWhatTheModuleLogged) {
    write_config();
    const json messages = check_json(0).at("messages");
    ASSERT_FALSE(messages.empty()) << "no association of the built-in table fits this configuration";
    EXPECT_EQ(messages[0].at("severity"), "warning");
    EXPECT_THAT(std::string(messages[0].at("code")), "mapping-color-space-unknown");
    EXPECT_EQ(messages[0].at("count"), 1);
    EXPECT_THAT(check().out, HasSubstr("warning: the color space "));
}

TEST_F(Check, ReportsTheErrorsOfLoadingAsJsonWhereThatIsWanted) {
    folder.write("show.ocio", "ocio_profile_version: 1\ncolorspaces: [\n");
    const ToolRun refused = check({"--json-diagnostics"});
    EXPECT_EQ(refused.code, 1);
    EXPECT_EQ(refused.out, "Config: " + path("show.ocio") + " (--config)\n");
    const json error = json::parse(refused.err);
    EXPECT_EQ(error.at("code"), "config-invalid");
    EXPECT_EQ(error.at("file"), path("show.ocio"));
    EXPECT_EQ(error.at("line"), 3);
    write_config();
    const ToolRun good = check({"--json-diagnostics"});
    EXPECT_EQ(json::parse(good.err.substr(0, good.err.find('\n'))).at("code"), "mapping-color-space-unknown");
    EXPECT_THAT(good.out, Not(HasSubstr("warning")));
}

TEST_F(Check, ReportsFailuresAsJsonWhereThatIsWanted) {
    write_config(space("log", "!<FileTransform> {src: gone.cube}"));
    const ToolRun result = check({"--json-diagnostics"});
    EXPECT_EQ(result.code, 1);
    const std::vector<json> errors = parse_diagnostics(result.err, "error");
    ASSERT_FALSE(errors.empty()) << result.err;
    EXPECT_EQ(errors.front().at("code"), "lut-missing");
    EXPECT_EQ(errors.front().at("subject"), "gone.cube");
}

TEST_F(Check, SaysTheErrorOfARefusedConfigurationOnce) {
    folder.write("show.ocio", "ocio_profile_version: 1\ncolorspaces: [\n");
    const json answer = check_json(1);
    const std::string reason = answer.at("reason").at("message");
    const std::string cause = reason.substr(reason.find("show.ocio': ") + 12);
    EXPECT_FALSE(cause.empty());
    for (const json& message : answer.at("messages"))
        EXPECT_THAT(std::string(message.at("message")), Not(HasSubstr(cause)));
    const std::string text = check().out;
    EXPECT_NE(text.find(cause), text.npos) << text;
    EXPECT_EQ(text.find(cause), text.rfind(cause)) << text;
}

TEST_F(Check, ListsEachErrorOnce) {
    folder.write("show.ocio", "ocio_profile_version: 1\ncolorspaces: [\n");
    const json answer = check_json(1);
    EXPECT_EQ(answer.at("reason").at("line"), 3);
    EXPECT_EQ(answer.at("reason").at("column"), 1);
    std::set<std::string> texts;
    for (const json& message : answer.at("messages"))
        EXPECT_TRUE(texts.insert(message.at("message")).second) << message;
}

TEST_F(Check, NamesAPathWithAnUnsetContextVariable) {
    write_config(space("log", "!<FileTransform> {src: $QB_TEST_UNSET}"));
    const json failure = check_json(1).at("failures").at(0);
    EXPECT_EQ(failure.at("reason").at("code"), "config-variable");
    EXPECT_EQ(failure.at("reason").at("message"),
              "the context variable 'QB_TEST_UNSET' in the path '$QB_TEST_UNSET' is not set");
    EXPECT_EQ(failure.at("reason").at("hint"), "set it in the environment or in the config");
}

TEST_F(Check, NamesAllUnsetContextVariablesOfAPath) {
    write_config(space("log", "!<FileTransform> {src: \"${QB_TEST_A}/%QB_TEST_B%-$QB_TEST_A.cube\"}"));
    const json failure = check_json(1).at("failures").at(0);
    EXPECT_EQ(failure.at("reason").at("code"), "config-variable");
    EXPECT_EQ(failure.at("reason").at("message"),
              "the context variables 'QB_TEST_A', 'QB_TEST_B' in the path "
              "'${QB_TEST_A}/%QB_TEST_B%-$QB_TEST_A.cube' are not set");
    EXPECT_EQ(failure.at("reason").at("hint"), "set them in the environment or in the config");
}

TEST_F(Check, NamesAnUnsetContextVariableOfTheSearchPath) {
    std::string config = SHOW_CONFIG + space("log", "!<FileTransform> {src: log.spi1d}");
    config.replace(config.find("search_path: luts"), 17, "search_path: $QB_TEST_UNSET/luts");
    folder.write("show.ocio", config);
    const json failure = check_json(1).at("failures").at(0);
    EXPECT_EQ(failure.at("reason").at("code"), "config-variable");
    EXPECT_EQ(failure.at("reason").at("message"),
              "the file 'log.spi1d' is missing: the context variable 'QB_TEST_UNSET' in the search path "
              "'$QB_TEST_UNSET/luts' is not set");
    EXPECT_THAT(std::string(failure.at("reason").at("hint")),
                StartsWith("set it in the environment or in the config; searched paths: "));
}

TEST_F(Check, NamesAMissingLutAndWhereItWasSought) {
    write_config(space("log", "!<FileTransform> {src: log.spi1d}"));
    const json answer = check_json(1);
    EXPECT_EQ(answer.at("ok"), false);
    ASSERT_EQ(answer.at("failures").size(), 1u);
    const json& failure = answer["failures"][0];
    EXPECT_EQ(failure.at("what"), "color space");
    EXPECT_EQ(failure.at("name"), "log");
    EXPECT_EQ(failure.at("directions"), json({"to lin", "from lin"}));
    EXPECT_EQ(failure.at("reason").at("code"), "lut-missing");
    EXPECT_EQ(failure.at("reason").at("message"), "the file 'log.spi1d' is missing");
    EXPECT_EQ(failure.at("reason").at("hint"), "searched paths: '" + path("luts/log.spi1d") + "'");
    EXPECT_THAT(check().out,
                HasSubstr("failed: color space 'log', to lin and from lin: the file 'log.spi1d'"));
}

TEST_F(Check, NamesADamagedLut) {
    folder.write("luts/log.spi1d", "Version 1\nFrom 0 1\nLength 3\nComponents 1\n{\n0\n");
    write_config(space("log", "!<FileTransform> {src: log.spi1d}"));
    const json failure = check_json(1).at("failures").at(0);
    EXPECT_EQ(failure.at("reason").at("code"), "lut-damaged");
    EXPECT_THAT(
        std::string(failure.at("reason").at("message")),
        AllOf(StartsWith("the file '" + path("luts/log.spi1d") + "' is damaged or of an unknown kind: "),
              HasSubstr("Not enough entries found"), Not(HasSubstr("\n"))));
}

TEST_F(Check, NamesTheMembersOfACycle) {
    write_config(space("first", "!<ColorSpaceTransform> {src: lin, dst: second}") +
                 space("second", "!<ColorSpaceTransform> {src: lin, dst: first}"));
    const json answer = check_json(1);
    EXPECT_EQ(answer["failures"][0].at("reason").at("code"), "config-cycle");
    EXPECT_THAT(std::string(answer["failures"][0].at("reason").at("message")),
                AllOf(HasSubstr("first"), HasSubstr("second")));
}

TEST_F(Check, NamesTheDirectionThatDoesNotExist) {
    write_config(space("flat", "!<MatrixTransform> {matrix: [0,0,0,0, 0,0,0,0, 0,0,0,0, 0,0,0,1]}"));
    const json answer = check_json(1);
    ASSERT_EQ(answer.at("failures").size(), 1u);
    EXPECT_EQ(answer["failures"][0].at("directions"), json({"to lin"}));
    EXPECT_THAT(std::string(answer["failures"][0].at("reason").at("message")),
                HasSubstr("cannot be inverted"));
}

TEST_F(Check, NamesACdlThatCannotBeInverted) {
    write_config(space("dead", "!<CDLTransform> {slope: [0, 1, 1]}"));
    const json answer = check_json(1);
    ASSERT_EQ(answer.at("failures").size(), 1u);
    EXPECT_EQ(answer["failures"][0].at("directions"), json({"to lin"}));
    EXPECT_EQ(answer["failures"][0].at("reason").at("code"), "matrix-singular");
    EXPECT_EQ(answer["failures"][0].at("reason").at("message"),
              "the CDL of the color space 'dead' (slope 0 1 1, saturation 1) cannot be inverted, so this "
              "direction does not exist");
}

TEST_F(Check, NamesAFileWithAMatrixThatCannotBeInverted) {
    folder.write("luts/flat.spimtx", "0 0 0 0\n0 1 0 0\n0 0 1 0\n");
    write_config(space("flat", "!<FileTransform> {src: flat.spimtx}"));
    const json answer = check_json(1);
    ASSERT_EQ(answer.at("failures").size(), 1u);
    EXPECT_EQ(answer["failures"][0].at("reason").at("code"), "matrix-singular");
    EXPECT_THAT(std::string(answer["failures"][0].at("reason").at("message")),
                HasSubstr(path("luts/flat.spimtx")));
}

TEST_F(Check, NamesViewsThatFail) {
    std::string config = SHOW_CONFIG + space("log", "!<FileTransform> {src: log.spi1d}");
    const std::string view = "    - !<View> {name: Warm, colorspace: warm}\n";
    config.insert(config.find(view), "    - !<View> {name: Log, colorspace: log}\n");
    folder.write("show.ocio", config);
    const json failures = check_json(1).at("failures");
    ASSERT_EQ(failures.size(), 2u);
    EXPECT_EQ(failures[1].at("what"), "view");
    EXPECT_EQ(failures[1].at("name"), "Monitor.Log");
    EXPECT_EQ(failures[1].at("directions"), json::array());
    EXPECT_THAT(check().out, HasSubstr("failed: view 'Monitor.Log': the file 'log.spi1d' is missing"));
}

TEST_F(Check, GivesBothVersionsOfAConfigurationThatIsTooNew) {
    folder.write("show.ocio", "ocio_profile_version: 2.999\n");
    const json answer = check_json(1);
    EXPECT_EQ(answer.at("loaded"), false);
    EXPECT_EQ(answer.at("reason").at("code"), "config-newer");
    EXPECT_THAT(std::string(answer.at("reason").at("message")),
                AllOf(HasSubstr("OCIO 2.999"), HasSubstr(std::string("than ") + ocio::get_version())));
    EXPECT_FALSE(answer.contains("failures"));
}

TEST_F(Check, FailsForTheUsersOwnFiles) {
    folder.write("preferences.yaml", "file_type: qb_colorio preferences\ncolor_management:\n  space: [s1, " +
                                         path("lost.spi1d") + ", 8, 0, 0.0, 1.0, 0.0, \"\", \"\"]\n");
    const ToolRun result = run({"check", "--json", "--prefs", path("preferences.yaml")});
    EXPECT_EQ(result.code, 1);
    const json answer = json::parse(result.out);
    EXPECT_EQ(answer.at("ok"), false);
    ASSERT_EQ(answer.at("messages").size(), 1u) << answer;
    const json& message = answer.at("messages").at(0);
    EXPECT_EQ(message.at("code"), "lut-missing");
    EXPECT_EQ(message.at("subject"), "s1");
    EXPECT_EQ(message.at("file"), path("lost.spi1d"));
    EXPECT_EQ(message.at("count"), 1);
    const ToolRun text = run({"check", "--prefs", path("preferences.yaml")});
    EXPECT_EQ(text.code, 1);
    EXPECT_THAT(text.out, HasSubstr("Failures: none.\nErrors while loading: 1.\n"));
}

TEST_F(Check, SaysWhyAConfigurationIsRefusedAndCountsRepeatedMessages) {
    folder.write("show.ocio", "ocio_profile_version: 1\ncolorspaces: [\n");
    const ToolRun result = check();
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.out, AllOf(HasSubstr("error: "), HasSubstr(":3:1: cannot load the config: "),
                                  Not(HasSubstr("Failures:"))));
}

TEST_F(Check, ListsWhatTheColorLibraryReportsByItself) {
    SKIP_WHERE_LISTED();
    std::string config = SHOW_CONFIG;
    config.replace(config.find("version: 1"), 10, "version: 2");
    config.insert(config.find("colorspaces:"), "inactive_colorspaces: [nowhere]\n");
    config.insert(config.find("  texture_paint"), "  default: lin\n");
    folder.write("show.ocio", config);
    testing::internal::CaptureStderr();
    const ToolRun result = check();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_THAT(result, Succeeds());
    EXPECT_THAT(result.out, HasSubstr(expected("line of an inactive space that is not there")));
}

TEST_F(Check, SaysThatAConfigurationIsMissing) {
    const json answer = check_json(1);
    EXPECT_EQ(answer.at("reason").at("code"), "config-missing");
    EXPECT_THAT(std::string(answer.at("reason").at("message")), HasSubstr("no such file"));
}

TEST_F(Check, WritesJsonWhateverTheNamesHold) {
    write_config(space("\"caf\\xE9 \\u263A\"", "!<FileTransform> {src: \"a\\\"b.spi1d\"}"));
    const json answer = check_json(1);
    EXPECT_THAT(std::string(answer.at("failures").at(0).at("name")), HasSubstr("caf"));
}

} // namespace
