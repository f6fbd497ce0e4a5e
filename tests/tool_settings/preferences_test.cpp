#include <sys/stat.h>

#include <filesystem>

#include "tests/tool/configs.h"
#include "tests/tool_settings/settings_fixture.h"

namespace {

using nlohmann::json;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

class Preferences : public SettingsTest {};

TEST_F(Preferences, LieInTheUsersConfigurationFolder) {
    EXPECT_EQ(print({"prefs", "path"}), path(PREFERENCES) + "\n");
    EXPECT_THAT(run({"prefs"}), FailsWith(2, HasSubstr("'prefs' needs one of path, set, show")));
}

TEST_F(Preferences, AreShownAsTheyHoldWithoutAFile) {
    const json answer = print_json({"prefs", "show"});
    EXPECT_EQ(answer.at("path"), path(PREFERENCES));
    EXPECT_EQ(answer.at("exists"), false);
    EXPECT_EQ(answer.at("preferences"), json::parse(R"({"use_color_space_file": false,
        "color_space_file_path": "", "cdl_library_file_path": "", "default_color_space_name": "linear",
        "use_color_space_by_extension_file": false, "color_space_by_extension_file_path": ""})"));
    EXPECT_EQ(answer.at("formats").size(), 9u);
    EXPECT_THAT(answer.at("spaces"), IsEmpty());
    EXPECT_FALSE(folder.exists("config"));
}

TEST_F(Preferences, AreShownAsTheFileHasThem) {
    folder.write("half.spi1d", HALVING_LUT);
    print({"space", "add", "half", "--lut", path("half.spi1d")});
    print({"cdl", "add", "warm", "--values", "2,1,1/0,0,0/1,1,1/1"});
    print({"formats", "set", "Targa", "--space", "Cineon"});
    const json answer = print_json({"prefs", "show"});
    EXPECT_EQ(answer.at("exists"), true);
    EXPECT_EQ(answer.at("spaces"), json({{{"name", "half"}, {"made_of", path("half.spi1d")}}}));
    EXPECT_EQ(answer.at("cdls").at(1).at("name"), "warm");
    EXPECT_EQ(answer.at("formats").at(3).at("color_space"), "Tavelion|Cineon");
    EXPECT_THAT(print({"prefs", "show"}),
                AllOf(StartsWith("From " + path(PREFERENCES)), HasSubstr("use_color_space_file"),
                      HasSubstr("Tavelion|Cineon"), HasSubstr("half"), HasSubstr("warm")));
}

TEST_F(Preferences, CanBeLeftAsideByWhateverOnlyShowsThem) {
    folder.write("half.spi1d", HALVING_LUT);
    print({"space", "add", "half", "--lut", path("half.spi1d")});
    const json answer = print_json({"prefs", "show", "--no-prefs"});
    EXPECT_EQ(answer.at("path"), "");
    EXPECT_EQ(answer.at("exists"), false);
    EXPECT_THAT(answer.at("spaces"), IsEmpty());
    EXPECT_THAT(print({"prefs", "show", "--no-prefs"}),
                StartsWith("No preferences file; showing the defaults.\n"));
    EXPECT_THAT(print_json({"space", "list", "--no-prefs"}).at("spaces"), IsEmpty());
    EXPECT_EQ(print_json({"space", "list"}).at("spaces").size(), 1u);
    EXPECT_THAT(run({"space", "list", "--no-prefs", "--prefs", path("x.yaml")}),
                FailsWith(2, HasSubstr("--prefs")));
    EXPECT_THAT(run({"space", "remove", "half", "--no-prefs"}), FailsWith(2, HasSubstr("--no-prefs")))
        << "there is nothing to change";
}

TEST_F(Preferences, NameAConfigurationThatTheOptionAndTheEnvironmentOverride) {
    folder.write("show.ocio", SHOW_CONFIG);
    folder.write(PREFERENCES, "use_color_space_file: 1\ncolor_space_file_path: " + path("show.ocio") + "\n");
    const auto source = [&](const std::vector<std::string>& more) {
        std::vector<std::string> arguments = {"list", "roles"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return print_json(arguments).at("config");
    };
    EXPECT_EQ(source({}), json({{"source", "preferences"}, {"path", path("show.ocio")}}));
    EXPECT_EQ(source({"--no-prefs"}).at("source"), "builtin");
    folder.write("other.ocio", SHOW_CONFIG);
    ocio.set(path("other.ocio"));
    EXPECT_EQ(source({}).at("source"), "environment");
    EXPECT_EQ(source({"--config", path("show.ocio")}).at("source"), "file");
    EXPECT_THAT(print({"list", "spaces"}), HasSubstr("half_light"));
}

TEST_F(Preferences, ThatNameAMissingConfigurationSayHowToMendThat) {
    folder.write(PREFERENCES, "use_color_space_file: 1\ncolor_space_file_path: " + path("no.ocio") + "\n");
    EXPECT_THAT(run({"list"}), FailsWith(1, AllOf(HasSubstr("named by the preferences: no such file"),
                                                  HasSubstr("--no-prefs"))));
    EXPECT_THAT(run({"list", "--no-prefs"}), Succeeds());
    const ToolRun check = run({"check"});
    EXPECT_EQ(check.code, 1);
    EXPECT_THAT(check.out, HasSubstr(path("no.ocio") + " (preferences)"));
}

TEST_F(Preferences, KeepWhatTheCommandsDoNotKnow) {
    folder.write("show.ocio", SHOW_CONFIG);
    folder.write(PREFERENCES, "use_color_space_file: 1\ncolor_space_file_path: " + path("show.ocio") +
                                  "\ndefault_color_space_name: lin\nof_a_later_version: kept\n");
    print({"cdl", "add", "warm", "--values", "2,1,1/0,0,0/1,1,1/1"});
    EXPECT_THAT(folder.read(PREFERENCES), AllOf(HasSubstr("of_a_later_version"), HasSubstr("kept")));
    const json values = print_json({"prefs", "show"}).at("preferences");
    EXPECT_EQ(values.at("use_color_space_file"), true);
    EXPECT_EQ(values.at("color_space_file_path"), path("show.ocio"));
    EXPECT_EQ(values.at("default_color_space_name"), "lin");
}

TEST_F(Preferences, NeverTakeUpTheConfigurationOfOneCommand) {
    folder.write("show.ocio", SHOW_CONFIG);
    print({"formats", "set", "Targa", "--space", "lin", "--config", path("show.ocio")});
    const json values = print_json({"prefs", "show"}).at("preferences");
    EXPECT_EQ(values.at("use_color_space_file"), false);
    EXPECT_EQ(values.at("color_space_file_path"), "");
}

constexpr char DAMAGED[] = "file_type: \"qb_colorio preferences\"\ncolor_management: {space: [\n";

TEST_F(Preferences, ThatAreDamagedAreSetAsideByAChangeAlone) {
    folder.write(PREFERENCES, DAMAGED);
    const ToolRun reading = run({"list", "spaces"});
    EXPECT_THAT(reading, Succeeds());
    EXPECT_THAT(reading.err, AllOf(StartsWith("colorio: warning:"), HasSubstr("the file is not used")));
    EXPECT_EQ(folder.read(PREFERENCES), DAMAGED);
    const ToolRun change = run({"formats", "set", "Targa", "--space", "linear"});
    EXPECT_THAT(change, Succeeds());
    EXPECT_THAT(change.err, AllOf(StartsWith("colorio: warning:"), HasSubstr("preferences.yaml.damaged-1")));
    EXPECT_EQ(folder.read(std::string(PREFERENCES) + ".damaged-1"), DAMAGED);
    EXPECT_THAT(run({"list", "spaces"}).err, IsEmpty());
}

TEST_F(Preferences, ThatAreNamedAndAreSomethingElseStayAsTheyAre) {
    folder.write("show.ocio", SHOW_CONFIG);
    folder.write("half.spi1d", HALVING_LUT);
    for (const char* name : {"show.ocio", "half.spi1d"}) {
        const std::string content = folder.read(name);
        for (const std::vector<std::string>& command : std::vector<std::vector<std::string>>{
                 {"list", "spaces"},
                 {"prefs", "show"},
                 {"explain", "sRGB", "linear"},
                 {"formats", "set", "Targa", "--space", "linear"},
                 {"space", "add", "half", "--lut", path("half.spi1d")},
                 {"cdl", "add", "warm", "--values", "2,1,1/0,0,0/1,1,1/1"}}) {
            std::vector<std::string> arguments = command;
            arguments.insert(arguments.end(), {"--prefs", path(name)});
            EXPECT_THAT(run(arguments), FailsWith(1, HasSubstr("is not a preferences file"))) << command[0];
            EXPECT_EQ(folder.read(name), content);
        }
    }
    EXPECT_EQ(count_files(), 2u);
}

TEST_F(Preferences, ThatAreAPipeOrADeviceAreRefused) {
    ASSERT_EQ(mkfifo(path("pipe").c_str(), 0600), 0);
    for (const std::string& special : {path("pipe"), std::string("/dev/zero")})
        for (const char* command : {"list", "prefs"})
            EXPECT_THAT(
                run({command, command == std::string("list") ? "spaces" : "show", "--prefs", special}),
                FailsWith(1, HasSubstr("it exists and is not a regular file")));
    EXPECT_TRUE(std::filesystem::is_fifo(path("pipe")));
}

TEST_F(Preferences, ThatCannotBeReadAreNotChanged) {
    std::filesystem::create_directories(path(PREFERENCES));
    EXPECT_THAT(run({"list", "spaces"}), Succeeds());
    EXPECT_THAT(run({"formats", "set", "Targa", "--space", "linear"}),
                FailsWith(1, HasSubstr("Is a directory")));
    EXPECT_TRUE(std::filesystem::is_directory(path(PREFERENCES)));
}

TEST_F(Preferences, ThatAreNamedMustExistToBeRead) {
    EXPECT_THAT(run({"list", "--prefs", path("no.yaml")}), FailsWith(1, HasSubstr("no such file")));
    EXPECT_THAT(run({"list", "--prefs", path("no.yaml"), "--no-prefs"}),
                FailsWith(2, HasSubstr("--prefs and --no-prefs cannot be combined")));
}

TEST_F(Preferences, ThatCannotBeSavedFailTheCommand) {
    folder.write("config", "a file, not a folder");
    EXPECT_THAT(run({"formats", "set", "Targa", "--space", "linear"}),
                FailsWith(1, AllOf(HasSubstr("cannot save"), HasSubstr("set XDG_CONFIG_HOME to a folder"))));
}

TEST_F(Preferences, NeedAHome) {
    const EnvGuard config("XDG_CONFIG_HOME");
    const EnvGuard home("HOME");
    const ToolRun result = run({"prefs", "path"});
    // The system may know the home folder of the user without a variable.
    if (result.code != 0)
        EXPECT_THAT(run({"formats", "set", "Targa", "--space", "linear"}),
                    FailsWith(2, HasSubstr("or use --prefs")));
    else
        EXPECT_THAT(result.out, HasSubstr("qb_colorio/preferences.yaml"));
}

} // namespace
