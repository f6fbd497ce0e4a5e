#include <nlohmann/json.hpp>

#include "colorio/ocio/types.h"
#include "tests/colorio/library_differences.h"
#include "tests/tool/configs.h"
#include "tests/tool/tool_fixture.h"

namespace {

using nlohmann::json;
using testing::AllOf;
using testing::ContainsRegex;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class List : public ToolTest {
protected:
    json list_json(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "list");
        arguments.push_back("--json");
        const ToolRun result = run(arguments);
        EXPECT_THAT(result, Succeeds());
        return json::parse(result.out);
    }

    static std::vector<std::string> pluck(const json& list, const char* key) {
        std::vector<std::string> values;
        for (const json& item : list)
            values.push_back(item.at(key));
        return values;
    }
};

TEST_F(List, ShowsTheBuiltinSpacesWithFamilyAndPosition) {
    const json answer = list_json({"spaces"});
    EXPECT_EQ(answer.at("config"), json({{"source", "builtin"}, {"path", ""}}));
    EXPECT_THAT(pluck(answer.at("spaces"), "label"),
                ElementsAre("Tavelion|sRGB", "Tavelion|Cineon", "Tavelion|linear"));
    EXPECT_EQ(answer["spaces"][1], json({{"position", 1},
                                         {"name", "Cineon"},
                                         {"family", "Tavelion"},
                                         {"label", "Tavelion|Cineon"},
                                         {"reference", "scene"},
                                         {"data", false},
                                         {"encoding", ""},
                                         {"categories", json::array()},
                                         {"aliases", json::array()},
                                         {"description", "Cineon (Log Film Scan)."}}));
    EXPECT_EQ(answer.at("inactive_spaces"), json::array());
    EXPECT_FALSE(answer.contains("views"));
}

TEST_F(List, ShowsTheViewsAndTheDefaultOne) {
    const json views = list_json({"views"}).at("views");
    EXPECT_THAT(pluck(views, "label"), ElementsAre("Tavelion.sRGB", "Tavelion.Cineon", "Tavelion.linear"));
    EXPECT_EQ(views[0], json({{"position", 0},
                              {"label", "Tavelion.sRGB"},
                              {"display", "Tavelion"},
                              {"view", "sRGB"},
                              {"color_space", "Tavelion|sRGB"},
                              {"color_space_published", true},
                              {"named_transform", ""},
                              {"view_transform", ""},
                              {"looks", ""},
                              {"shared", false},
                              {"description", ""},
                              {"default", true}}));
    EXPECT_EQ(views[1].at("default"), false);
}

TEST_F(List, ShowsTheRoles) {
    folder.write("show.ocio", SHOW_CONFIG);
    const json roles = list_json({"roles", "--config", path("show.ocio")}).at("roles");
    EXPECT_EQ(roles.size(), 9u);
    EXPECT_EQ(roles.at("scene_linear"), "lin");
    EXPECT_EQ(roles.at("texture_paint"), "half_light");
}

TEST_F(List, MarksTheRolesThatTheConfigurationDoesNotHave) {
    folder.write("show.ocio", SHOW_CONFIG);
    const json answer = list_json({"roles", "--config", path("show.ocio")});
    const json& in_config = answer.at("roles_in_config");
    EXPECT_EQ(in_config.size(), answer.at("roles").size());
    for (const auto& [role, is_in_config] : in_config.items())
        EXPECT_EQ(is_in_config, role == "scene_linear" || role == "texture_paint") << role;
    const ToolRun table = run({"list", "roles", "--config", path("show.ocio")});
    EXPECT_THAT(table.out, AllOf(ContainsRegex("texture_paint +half_light\n"),
                                 ContainsRegex("matte_paint +linear +not in the config\n")));
}

TEST_F(List, MarksEveryRoleOfTheBuiltinConfigurationWhichHasNone) {
    const json in_config = list_json({"roles"}).at("roles_in_config");
    EXPECT_EQ(in_config.size(), 9u);
    for (const auto& [role, is_in_config] : in_config.items())
        EXPECT_EQ(is_in_config, false) << role;
}

TEST_F(List, ShowsEverythingWithoutATopic) {
    const json answer = list_json({});
    for (const char* topic : {"spaces", "named_transforms", "views", "roles", "cdls"})
        EXPECT_TRUE(answer.contains(topic)) << topic;
    EXPECT_EQ(list_json({"all"}), answer);
}

TEST_F(List, ShowsAConfigurationFile) {
    folder.write("show.ocio", SHOW_CONFIG);
    const json answer = list_json({"--config", path("show.ocio")});
    EXPECT_EQ(answer.at("config"), json({{"source", "file"}, {"path", path("show.ocio")}}));
    EXPECT_THAT(pluck(answer.at("spaces"), "label"), ElementsAre("lin", "half_light", "ops|warm"));
    EXPECT_THAT(pluck(answer.at("spaces"), "family"), ElementsAre("", "", "ops"));
    EXPECT_THAT(pluck(answer.at("views"), "label"),
                ElementsAre("Monitor.Film", "Monitor.Warm", "Cinema.Film.v2"));
    EXPECT_THAT(pluck(answer.at("views"), "view"), ElementsAre("Film", "Warm", "Film.v2"));
    EXPECT_THAT(pluck(answer.at("views"), "color_space"),
                ElementsAre("half_light", "ops|warm", "half_light"));
}

TEST_F(List, PrintsTablesForPeople) {
    const ToolRun result = run({"list", "spaces"});
    EXPECT_THAT(result, Succeeds());
    EXPECT_EQ(result.out, "From the built-in config.\n"
                          "\n"
                          "#  color space  family    label\n"
                          "0  sRGB         Tavelion  Tavelion|sRGB\n"
                          "1  Cineon       Tavelion  Tavelion|Cineon\n"
                          "2  linear       Tavelion  Tavelion|linear\n");
    EXPECT_THAT(result.err, IsEmpty());
}

TEST_F(List, FollowsTheEnvironmentVariable) {
    ocio.set(folder.write("show.ocio", SHOW_CONFIG));
    const json answer = list_json({"spaces"});
    EXPECT_EQ(answer.at("config"), json({{"source", "environment"}, {"path", path("show.ocio")}}));
    EXPECT_THAT(pluck(answer.at("spaces"), "name"), ElementsAre("lin", "half_light", "warm"));
}

TEST_F(List, PrefersTheOptionToTheEnvironmentVariable) {
    ocio.set(path("missing.ocio"));
    folder.write("show.ocio", SHOW_CONFIG);
    EXPECT_EQ(list_json({"--config", path("show.ocio")}).at("config").at("source"), "file");
}

TEST_F(List, FailsOnAConfigurationThatIsMissing) {
    const ToolRun result = run({"list", "--config", path("missing.ocio")});
    EXPECT_THAT(result, FailsWith(1, "colorio: error: cannot load the config '" + path("missing.ocio") +
                                         "': no such file\n"));
    EXPECT_THAT(result.out, IsEmpty());
}

TEST_F(List, TakesAConfigInsideOpenColorIOOrSaysThatThereIsNone) {
    const ToolRun result = run({"list", "views", "--config", "ocio://default"});
    EXPECT_THAT(result.out + result.err, HasSubstr(library_differences::expected("--config ocio://default")));
    EXPECT_EQ(result.code, result.err.empty() ? 0 : 1);
}

TEST_F(List, ShowsAConfigurationThatTheColorLibraryHoldsOrWhyItHoldsNone) {
    ocio.set("ocio://default");
    const ToolRun result = run({"list", "views"});
    EXPECT_THAT(result.out + result.err, HasSubstr(library_differences::expected("OCIO=ocio://default")));
    EXPECT_EQ(result.code, result.err.empty() ? 0 : 1);
}

TEST_F(List, FailsOnAFolderInsteadOfAConfiguration) {
    EXPECT_THAT(run({"list", "--config", folder.get_path()}), FailsWith(1, HasSubstr("it is a folder")));
}

TEST_F(List, FailsOnAConfigurationThatCannotBeRead) {
    folder.write("bad.ocio", "ocio_profile_version: 1\ncolorspaces: [\n");
    EXPECT_THAT(run({"list", "--config", path("bad.ocio")}),
                FailsWith(1, AllOf(HasSubstr(path("bad.ocio") + ":3:1: "), HasSubstr("end of sequence"))));
}

TEST_F(List, FailsOnAConfigurationNewerThanTheLibraryAndNamesBothVersions) {
    folder.write("new.ocio", "ocio_profile_version: 2.999\n");
    EXPECT_THAT(run({"list", "--config", path("new.ocio")}),
                FailsWith(1, AllOf(HasSubstr("OCIO 2.999"),
                                   HasSubstr(std::string("newer OpenColorIO than ") + ocio::get_version()))));
}

TEST_F(List, FailsOnAnEnvironmentVariableThatNamesNoConfigurationAndSaysHowToMendThat) {
    ocio.set(path("missing.ocio"));
    EXPECT_THAT(run({"list"}), FailsWith(1, AllOf(HasSubstr("environment variable OCIO"),
                                                  HasSubstr(path("missing.ocio")), HasSubstr("unset it"))));
}

TEST_F(List, WorksWhereTheCacheFolderCannotBeMadeAndSaysSo) {
    folder.write("cache", "a file, not a folder");
    const ToolRun result = run({"list"});
    EXPECT_THAT(result, Succeeds());
    EXPECT_THAT(result.err, AllOf(HasSubstr("temporary files are kept in '"), HasSubstr("XDG_CACHE_HOME")));
}

TEST_F(List, ShowsTheModulesMessagesOnlyWhenAsked) {
    folder.write("show.ocio", SHOW_CONFIG);
    EXPECT_THAT(run({"list", "--config", path("show.ocio")}).err, IsEmpty());
    EXPECT_THAT(run({"list", "-v", "--config", path("show.ocio")}).err, HasSubstr("Color Management: "));
}

TEST_F(List, LeavesNothingBehindForTheNextRun) {
    folder.write("show.ocio", SHOW_CONFIG);
    ASSERT_THAT(run({"list", "--config", path("show.ocio")}), Succeeds());
    EXPECT_THAT(pluck(list_json({"spaces"}).at("spaces"), "name"), Not(testing::Contains("lin")));
}

} // namespace
