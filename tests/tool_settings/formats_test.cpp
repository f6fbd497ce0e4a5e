#include <filesystem>

#include "tests/tool/configs.h"
#include "tests/tool/images.h"
#include "tests/tool_settings/settings_fixture.h"

namespace {

using nlohmann::json;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class Formats : public SettingsTest {
protected:
    /// The row of a category; null when there is none.
    json find(const std::string& category, const std::vector<std::string>& more = {}) {
        std::vector<std::string> arguments = {"formats", "list"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        const json answer = print_json(arguments);
        for (const json& row : answer.at("formats"))
            if (row.at("category") == category)
                return row;
        return nullptr;
    }
    /// Makes preferences that follow a mapping file "map.yaml" of that text.
    void follow_mapping(const std::string& yaml) {
        folder.write("map.yaml", yaml);
        folder.write(PREFERENCES,
                     "use_color_space_by_extension_file: 1\ncolor_space_by_extension_file_path: " +
                         path("map.yaml") + "\n");
    }
};

TEST_F(Formats, ListsTheBuiltinAssociations) {
    const json answer = print_json({"formats"});
    EXPECT_EQ(answer.at("source"), "builtin");
    ASSERT_EQ(answer.at("formats").size(), 9u);
    EXPECT_EQ(answer["formats"][0], json::parse(R"({"position": 0, "category": "Open EXR",
        "extensions": ["exr", "sxr"], "color_space": "Tavelion|linear", "known": true})"));
    EXPECT_EQ(answer["formats"][8].at("category"), "default");
    EXPECT_EQ(print({"formats"}), print({"formats", "list"}));
    EXPECT_FALSE(folder.exists("config"));
}

TEST_F(Formats, KeepsAChangedColorSpaceForTheCommandsThatFollow) {
    EXPECT_EQ(print({"formats", "set", "Targa", "--space", "linear"}), "Targa (tga): Tavelion|linear\n");
    EXPECT_EQ(find("Targa").at("color_space"), "Tavelion|linear");
    EXPECT_EQ(find("Png").at("color_space"), "Tavelion|sRGB");
    EXPECT_EQ(find("Targa", {"--no-prefs"}).at("color_space"), "Tavelion|sRGB");
    EXPECT_TRUE(folder.exists(PREFERENCES));
}

TEST_F(Formats, KeepsChangesInAnotherFileWhenAsked) {
    print({"formats", "set", "Targa", "--space", "linear", "--prefs", path("mine.yaml")});
    EXPECT_TRUE(folder.exists("mine.yaml"));
    EXPECT_FALSE(folder.exists("config"));
    EXPECT_EQ(find("Targa").at("color_space"), "Tavelion|sRGB");
    EXPECT_EQ(find("Targa", {"--prefs", path("mine.yaml")}).at("color_space"), "Tavelion|linear");
}

TEST_F(Formats, SetsExtensionsWithoutFullStopsAndInSmallLetters) {
    print({"formats", "set", "Jpeg", "--extensions", ".JPG, jpeg,jfif"});
    EXPECT_EQ(find("Jpeg").at("extensions"), json({"jpg", "jpeg", "jfif"}));
}

TEST_F(Formats, AddsACategoryInFrontOfTheDefaultOne) {
    print({"formats", "add", "Camera", "--extensions", "dng,cr2", "--space", "linear"});
    EXPECT_EQ(find("Camera"), json::parse(R"({"position": 8, "category": "Camera",
        "extensions": ["dng", "cr2"], "color_space": "Tavelion|linear", "known": true})"));
    EXPECT_EQ(find("default").at("position"), 9);
    EXPECT_THAT(run({"formats", "add", "Camera", "--extensions", "x", "--space", "linear"}),
                FailsWith(1, HasSubstr("a format named 'Camera' already exists")));
}

TEST_F(Formats, WarnsOfExtensionsThatAnotherCategoryDecidesAbout) {
    const ToolRun result = run({"formats", "add", "Mine", "--extensions", "exr,foo", "--space", "sRGB"});
    EXPECT_THAT(result, Succeeds());
    EXPECT_EQ(
        result.err,
        "colorio: warning: the color space of .exr files is still 'Tavelion|linear', because the category "
        "'Open EXR' takes precedence\n");
}

TEST_F(Formats, RemovesOnlyCategoriesOfTheUser) {
    print({"formats", "add", "Camera", "--extensions", "dng", "--space", "linear"});
    EXPECT_EQ(print({"formats", "remove", "Camera"}), "Camera: removed\n");
    EXPECT_EQ(find("Camera"), nullptr);
    EXPECT_THAT(run({"formats", "remove", "Targa"}),
                FailsWith(1, AllOf(HasSubstr("cannot remove 'Targa': it is a built-in format"),
                                   HasSubstr("formats set"))));
    EXPECT_NE(find("Targa"), nullptr);
}

TEST_F(Formats, AnswersUnknownNamesWithTheNearestOnesAndSavesNothing) {
    EXPECT_THAT(run({"formats", "set", "Tagra", "--space", "linear"}),
                FailsWith(1, AllOf(HasSubstr("no category 'Tagra'"), HasSubstr("did you mean 'Targa'?"))));
    EXPECT_THAT(run({"formats", "set", "Targa", "--space", "linaer"}),
                FailsWith(1, AllOf(HasSubstr("no color space 'linaer'"), HasSubstr("'linear'"))));
    EXPECT_THAT(run({"formats", "remove", "Camera"}), FailsWith(1, HasSubstr("no category 'Camera'")));
    EXPECT_THAT(run({"formats", "set", "Targa"}), FailsWith(2, HasSubstr("--space or --extensions")));
    EXPECT_THAT(run({"formats", "set", "Targa", "--extensions", " ,."}),
                FailsWith(2, HasSubstr("invalid list of file extensions")));
    EXPECT_THAT(run({"formats", "set", "default", "--extensions", "foo"}),
                FailsWith(2, HasSubstr("it applies to files of all other formats")));
    EXPECT_THAT(run({"formats", "remve", "Targa"}), FailsWith(2, HasSubstr("did you mean 'remove'?")));
    EXPECT_FALSE(folder.exists(PREFERENCES));
}

TEST_F(Formats, ChecksThatAConfigurationHasTheColorSpaces) {
    EXPECT_THAT(print({"formats", "check"}),
                "All color spaces of the built-in associations exist in the built-in config.\n");
    folder.write("show.ocio", SHOW_CONFIG);
    const ToolRun result = run({"formats", "check", "--config", path("show.ocio")});
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.out, AllOf(HasSubstr("associations that are missing in show.ocio:\n"),
                                  HasSubstr("Targa (tga): 'Tavelion|sRGB'")));
    EXPECT_EQ(find("Targa", {"--config", path("show.ocio")}).at("known"), false);
}

TEST_F(Formats, ReportsMissingColorSpacesAsJsonWhereThatIsWanted) {
    folder.write("show.ocio", SHOW_CONFIG);
    const ToolRun result = run({"--json-diagnostics", "formats", "check", "--config", path("show.ocio")});
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.err, HasSubstr("\"code\":\"mapping-color-space-unknown\""));
}

TEST_F(Formats, ChecksAreAvailableAsJson) {
    folder.write("show.ocio", SHOW_CONFIG);
    EXPECT_EQ(print_json({"formats", "check"}).at("unknown").size(), 0u);
    const ToolRun result = run({"formats", "check", "--json", "--config", path("show.ocio")});
    EXPECT_EQ(result.code, 1);
    const json answer = json::parse(result.out);
    EXPECT_EQ(answer.at("config"), "show.ocio");
    EXPECT_EQ(answer.at("associations"), "the built-in associations");
    EXPECT_EQ(answer.at("unknown").at(0).at("code"), "mapping-color-space-unknown");
}

TEST_F(Formats, SuggestsTheNearestColorSpace) {
    follow_mapping("Scan: {extensions: \"dpx\", color_space: \"Tavelion|Cinoen\"}\n");
    EXPECT_THAT(run({"formats", "check"}).out,
                HasSubstr("Scan (dpx): 'Tavelion|Cinoen'; did you mean 'Tavelion|Cineon'?\n"));
}

TEST_F(Formats, TakesColorSpacesOfAConfiguration) {
    folder.write("show.ocio", SHOW_CONFIG);
    EXPECT_THAT(print({"formats", "set", "Targa", "--space", "warm", "--config", path("show.ocio")}),
                HasSubstr("ops|warm"));
    EXPECT_EQ(find("Targa", {"--config", path("show.ocio")}).at("known"), true);
}

TEST_F(Formats, FollowsTheMappingFileOfThePreferencesAndSaysThatItHidesChanges) {
    follow_mapping("Scan: {extensions: \"dpx\", color_space: \"Tavelion|Cineon\"}\n");
    const json answer = print_json({"formats"});
    EXPECT_EQ(answer.at("source"), "file");
    ASSERT_EQ(answer.at("formats").size(), 2u);
    EXPECT_EQ(answer["formats"][0].at("category"), "Scan");
    const ToolRun result = run({"formats", "set", "Targa", "--space", "linear"});
    EXPECT_THAT(result, Succeeds());
    EXPECT_THAT(result.err, HasSubstr("the mapping file '" + path("map.yaml") + "'"));
    EXPECT_THAT(folder.read(PREFERENCES), HasSubstr(path("map.yaml")));
}

TEST_F(Formats, ShowsTheOwnDataOfCategoriesOfOneName) {
    follow_mapping("Scan: {extensions: dpx, color_space: Tavelion|Cineon}\n"
                   "Scan: {extensions: cin, color_space: Tavelion|linear}\n");
    const json rows = print_json({"formats"}).at("formats");
    ASSERT_EQ(rows.size(), 3u);
    EXPECT_EQ(rows[0], json::parse(R"({"position": 0, "category": "Scan", "extensions": ["dpx"],
                                       "color_space": "Tavelion|Cineon", "known": true})"));
    EXPECT_EQ(rows[1], json::parse(R"({"position": 1, "category": "Scan", "extensions": ["cin"],
                                       "color_space": "Tavelion|linear", "known": true})"));
}

TEST_F(Formats, FallsBackToTheBuiltinSrgbAsTheModuleDoesWithoutADefaultCategory) {
    follow_mapping("Screen: {extensions: png, color_space: Tavelion|sRGB}\n"
                   "Scene: {extensions: png, color_space: Tavelion|linear}\n"
                   "default: {extensions: Other}\n");
    ASSERT_EQ(print_json({"formats"}).at("formats").size(), 2u) << "an incomplete group makes no row";
    write_image(path("in.png"), make_image(1, 1, 3, OIIO::TypeUInt8, {0.5f, 0.5f, 0.5f}));
    EXPECT_THAT(print({"convert", path("in.png"), path("out.exr"), "--to", "Cineon", "--why"}),
                HasSubstr("source:        Tavelion|linear, from the mapping file '" + path("map.yaml") +
                          "', category Scene\n"));
}

TEST_F(Formats, ShowsWhereAMappingFileCannotBeParsed) {
    follow_mapping("Scan: {extensions: dpx, color_space: linear}\nGrade: {extensions: [unclosed\n");
    const std::string place = path("map.yaml") + ":3:1: end of sequence flow not found";
    EXPECT_THAT(run({"formats", "list", "--verbose"}).err, HasSubstr(place));
    EXPECT_THAT(print({"check"}), HasSubstr("warning: " + place));
    EXPECT_EQ(print_json({"formats"}).at("source"), "builtin");
}

TEST_F(Formats, WarnsOfAMappingFileThatIsNotInUse) {
    const std::string start = "the mapping file of the preferences is not used: ";
    follow_mapping("Grade: {extensions: [unclosed\n");
    const std::string warning = path("map.yaml") + ":2:1: " + start + "end of sequence flow not found\n";
    EXPECT_THAT(run({"formats", "list"}).err, HasSubstr(warning));
    EXPECT_THAT(run({"formats", "list", "--json"}).err, HasSubstr(warning));
    EXPECT_THAT(run({"formats", "check"}).err, HasSubstr(warning));
    write_image(path("in.png"), make_image(1, 1, 3, OIIO::TypeUInt8, {0.5f, 0.5f, 0.5f}));
    EXPECT_THAT(run({"convert", path("in.png"), path("out.exr"), "--to", "linear"}).err, HasSubstr(warning));
    std::filesystem::remove(path("map.yaml"));
    EXPECT_THAT(run({"formats", "list"}).err,
                HasSubstr(start + "cannot read '" + path("map.yaml") + "': no such file"));
}

TEST_F(Formats, HasNothingToSayOfAMappingFileThatIsInUseOrNotWanted) {
    follow_mapping("Scan: {extensions: dpx, color_space: Tavelion|Cineon}\n");
    EXPECT_EQ(run({"formats", "list"}).err, "");
    folder.write("map.yaml", "Grade: {extensions: [unclosed\n");
    EXPECT_EQ(run({"formats", "list", "--no-prefs"}).err, "");
    folder.write(PREFERENCES, "color_space_by_extension_file_path: " + path("map.yaml") + "\n");
    EXPECT_EQ(run({"formats", "list"}).err, "");
}

} // namespace
