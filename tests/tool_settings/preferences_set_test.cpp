#include "tests/tool/configs.h"
#include "tests/tool_settings/settings_fixture.h"

namespace {

using nlohmann::json;
using testing::AllOf;
using testing::HasSubstr;

class PreferencesSet : public SettingsTest {
protected:
    json get(const std::string& key) { return print_json({"prefs", "show"}).at("preferences").at(key); }
};

TEST_F(PreferencesSet, TheConfigOfEveryLaterCommand) {
    folder.write("show.ocio", SHOW_CONFIG);
    const ToolRun result = run({"prefs", "set", "color_space_file_path", path("x/../show.ocio")});
    ASSERT_THAT(result, Succeeds());
    EXPECT_EQ(result.out, "color_space_file_path: " + path("show.ocio") + "\n");
    EXPECT_THAT(result.err, HasSubstr("use_color_space_file is yes"));
    EXPECT_EQ(get("color_space_file_path"), path("show.ocio"));
    EXPECT_EQ(get("use_color_space_file"), true);
    EXPECT_THAT(print({"explain", "lin", "half_light"}), HasSubstr(path("show.ocio") + " (preferences)"));
    print({"prefs", "set", "use_color_space_file", "no"});
    EXPECT_THAT(print({"explain", "linear", "sRGB"}), HasSubstr("the built-in config"));
    EXPECT_EQ(get("color_space_file_path"), path("show.ocio"));
}

TEST_F(PreferencesSet, PathsAreStoredAsAbsoluteOnes) {
    folder.write(
        "grades.ccc",
        "<ColorCorrectionCollection><ColorCorrection id=\"warm\"><SOPNode><Slope>2 1 1</Slope>"
        "<Offset>0 0 0</Offset><Power>1 1 1</Power></SOPNode><SATNode><Saturation>1</Saturation></SATNode>"
        "</ColorCorrection></ColorCorrectionCollection>");
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(folder.get_path());
    const ToolRun result = run({"prefs", "set", "cdl_library_file_path", "grades.ccc"});
    std::filesystem::current_path(before);
    ASSERT_THAT(result, Succeeds());
    EXPECT_EQ(get("cdl_library_file_path"), path("grades.ccc"));
    EXPECT_THAT(print({"list", "cdls"}), HasSubstr("warm"));
}

TEST_F(PreferencesSet, AnEmptyPathRemovesIt) {
    folder.write("show.ocio", SHOW_CONFIG);
    print({"prefs", "set", "color_space_file_path", path("show.ocio")});
    print({"prefs", "set", "color_space_file_path", ""});
    EXPECT_EQ(get("color_space_file_path"), "");
    EXPECT_EQ(get("use_color_space_file"), false);
}

TEST_F(PreferencesSet, TheMappingFileAndItsSwitch) {
    folder.write("map.yaml", "{}\n");
    print({"prefs", "set", "color_space_by_extension_file_path", path("map.yaml")});
    EXPECT_EQ(get("use_color_space_by_extension_file"), true);
    print({"prefs", "set", "use_color_space_by_extension_file", "off"});
    EXPECT_EQ(get("use_color_space_by_extension_file"), false);
    print({"prefs", "set", "default_color_space_name", "Cineon"});
    EXPECT_EQ(get("default_color_space_name"), "Cineon");
}

TEST_F(PreferencesSet, KeepsEverythingElse) {
    folder.write("half.spi1d", HALVING_LUT);
    print({"space", "add", "half", "--lut", path("half.spi1d")});
    print({"formats", "set", "Targa", "--space", "Cineon"});
    print({"prefs", "set", "use_color_space_file", "no"});
    EXPECT_EQ(print_json({"space", "list"}).at("spaces").size(), 1u);
    EXPECT_EQ(print_json({"prefs", "show"}).at("formats").at(3).at("color_space"), "Tavelion|Cineon");
}

TEST_F(PreferencesSet, RefusesWhatCannotBeUsed) {
    folder.write("bad.ocio", "nonsense");
    EXPECT_THAT(run({"prefs", "set", "color_space_file_path", path("bad.ocio")}),
                FailsWith(1, HasSubstr("bad.ocio")));
    EXPECT_THAT(run({"prefs", "set", "color_space_file_path", path("gone.ocio")}),
                FailsWith(1, HasSubstr("no such file")));
    EXPECT_THAT(run({"prefs", "set", "cdl_library_file_path", path("bad.ocio")}),
                FailsWith(1, HasSubstr("bad.ocio")));
    EXPECT_THAT(run({"prefs", "set", "color_space_by_extension_file_path", folder.get_path()}),
                FailsWith(1, HasSubstr("it is a folder")));
    EXPECT_THAT(run({"prefs", "set", "use_color_space_file", "maybe"}),
                FailsWith(2, HasSubstr("; use yes or no")));
    EXPECT_THAT(run({"prefs", "set", "use_color_space_fiel", "no"}),
                FailsWith(2, HasSubstr("did you mean 'use_color_space_file'?")));
    EXPECT_THAT(run({"prefs", "set", "use_color_space_file"}), FailsWith(2, HasSubstr("value")));
    EXPECT_FALSE(folder.exists(PREFERENCES));
}

} // namespace
