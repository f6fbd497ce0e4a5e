#include "standalone/preferences.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "tests/standalone/preferences_fixture.h"
#include "tests/support/env_guard.h"

using testing::IsEmpty;

namespace {

int mode_of(const std::string& path) {
    struct stat status;
    return stat(path.c_str(), &status) == 0 ? static_cast<int>(status.st_mode & 07777) : -1;
}

TEST_F(Preferences, WithoutAFileEverythingStaysAsItIs) {
    app.set_color_space_file_path("/set/before");
    EXPECT_TRUE(preferences.load(app));
    EXPECT_EQ(app.get_color_space_file_path(), "/set/before");
    EXPECT_EQ(preferences.get_color_management().get_value_count(), 0u);
    EXPECT_EQ(folder.count_entries(), 0u);
    EXPECT_THAT(log.get_lines(), IsEmpty());
}

TEST_F(Preferences, EverythingSavedIsLoadedAgain) {
    app.set_use_color_space_file(true);
    app.set_color_space_file_path("/shows/it's \"here\"/config.ocio");
    app.set_cdl_library_file_path("/looks.ccc");
    app.set_default_color_space_name("ACES - ACEScg");
    app.set_use_color_space_by_extension_file(4000000000u);
    app.set_color_space_by_extension_file_path("/map.yaml");
    ASSERT_TRUE(preferences.save(app, save_one_space));

    StandaloneApp loaded;
    PreferenceFile other(path.c_str());
    const ParserEntry* const module_entry = &other.get_color_management();
    ASSERT_TRUE(other.load(loaded));
    EXPECT_TRUE(loaded.get_use_color_space_file());
    EXPECT_EQ(loaded.get_color_space_file_path(), "/shows/it's \"here\"/config.ocio");
    EXPECT_EQ(loaded.get_cdl_library_file_path(), "/looks.ccc");
    EXPECT_EQ(loaded.get_default_color_space_name(), "ACES - ACEScg");
    EXPECT_NE(loaded.get_use_color_space_by_extension_file(), 0u);
    EXPECT_EQ(loaded.get_color_space_by_extension_file_path(), "/map.yaml");
    EXPECT_EQ(&other.get_color_management(), module_entry);
    ASSERT_TRUE(other.get_color_management().is_group());
    EXPECT_EQ(describe(*other.get_color_management().get_group(0)),
              "space=s\"plate\"; extension=s\"OpenEXR\"");
    EXPECT_THAT(log.get_lines(), IsEmpty());
}

TEST_F(Preferences, AreForThisUserAlone) {
    ASSERT_TRUE(preferences.save(app, save_one_space));
    EXPECT_EQ(mode_of(path), 0600);
    EXPECT_EQ(mode_of(folder.file("config/qb_colorio")), 0700);
    EXPECT_EQ(mode_of(folder.file("config")), 0700);
    chmod(path.c_str(), 0644);
    ASSERT_TRUE(preferences.save(app, save_one_space));
    EXPECT_EQ(mode_of(path), 0600);
}

TEST_F(Preferences, UnknownEntriesSurviveALoadAndASave) {
    folder.write("config/qb_colorio/preferences.yaml", "use_color_space_file: true\n"
                                                       "future: [1, {a: 2.5}]\n"
                                                       "color_management:\n"
                                                       "  - look: [x, y]\n"
                                                       "    space: [old]\n"
                                                       "    CDL: [old]\n"
                                                       "    extension: [old]\n"
                                                       "    tags: {b: ~}\n"
                                                       "window: \"1\"\n");
    ASSERT_TRUE(preferences.load(app));
    EXPECT_TRUE(app.get_use_color_space_file());
    ASSERT_TRUE(preferences.save(app, save_one_space));
    app.set_use_color_space_file(false);
    EXPECT_TRUE(preferences.save(app, save_one_space)) << "and a second one";
    EXPECT_EQ(
        describe_file(),
        std::string(DEFAULTS) +
            "color_management={space=s\"plate\"; extension=s\"OpenEXR\"; look=s\"x\" s\"y\"; tags={b=}}; "
            "future=i1 {a=d4004000000000000}; window=s\"1\"");
}

TEST_F(Preferences, UnknownEntriesSurviveInTheFirstPlaceAndWithoutAName) {
    folder.write("config/qb_colorio/preferences.yaml",
                 "future: 1\ncolor_management: {\"\": 2, look: 3}\nuse_color_space_file: 1\n");
    ASSERT_TRUE(preferences.load_to_change(app));
    app.set_use_color_space_file(false);
    ASSERT_TRUE(preferences.save(app, save_one_space));
    EXPECT_EQ(describe_file(),
              std::string(DEFAULTS) +
                  "color_management={space=s\"plate\"; extension=s\"OpenEXR\"; =i2; look=i3}; "
                  "future=i1");
}

TEST_F(Preferences, UnknownEntriesSurviveAModuleWithNothingToSave) {
    folder.write("config/qb_colorio/preferences.yaml", "color_management: {look: 1, space: old}\n");
    ASSERT_TRUE(preferences.save(app, save_nothing));
    EXPECT_EQ(describe_file(), std::string(DEFAULTS) + "color_management={look=i1}");
}

TEST_F(Preferences, AModuleWithNothingToSaveOrToKeepHasAnEmptyEntry) {
    ASSERT_TRUE(preferences.save(app, save_nothing));
    EXPECT_EQ(describe_file(), std::string(DEFAULTS) + "color_management=");
}

TEST_F(Preferences, WithoutAModuleItsEntriesStayAsTheyAreInTheFile) {
    folder.write("config/qb_colorio/preferences.yaml",
                 "color_management: !!pairs [space: a, space: b, look: 1]\n");
    ASSERT_TRUE(preferences.save(app, {}));
    EXPECT_EQ(describe_file(),
              std::string(DEFAULTS) + "color_management={space=s\"a\"; space=s\"b\"; look=i1}");
}

TEST_F(Preferences, WhatAnotherProgramAddedMeanwhileSurvives) {
    ASSERT_TRUE(preferences.load(app));
    folder.write("config/qb_colorio/preferences.yaml", std::string(MARKER) + "added: 1\n");
    ASSERT_TRUE(preferences.save(app, save_nothing));
    EXPECT_EQ(describe_file(), std::string(DEFAULTS) + "color_management=; added=i1");
}

TEST_F(Preferences, WhatWasLoadedSurvivesWhenTheFileDisappears) {
    folder.write("config/qb_colorio/preferences.yaml", std::string(MARKER) + "future: 1\n");
    ASSERT_TRUE(preferences.load(app));
    std::filesystem::remove(path);
    ASSERT_TRUE(preferences.save(app, save_nothing));
    EXPECT_EQ(describe_file(), std::string(DEFAULTS) + "color_management=; future=i1");
}

TEST(PreferencePath, FollowsTheConfigVariableWhenItIsAbsolute) {
    EnvGuard variable("XDG_CONFIG_HOME", "/etc/somewhere");
    EnvGuard home("HOME", "/home/somebody");
    EXPECT_EQ(PreferenceFile::get_default_path(), "/etc/somewhere/qb_colorio/preferences.yaml");
    variable.set("relative");
    EXPECT_EQ(PreferenceFile::get_default_path(), "/home/somebody/.config/qb_colorio/preferences.yaml");
    variable.unset();
    EXPECT_EQ(PreferenceFile::get_default_path(), "/home/somebody/.config/qb_colorio/preferences.yaml");
}

TEST(PreferencePath, LiesInTheHomeOfThePasswordFileWhenTheVariableNamesNone) {
    const passwd* const user = getpwuid(geteuid());
    if (!user || user->pw_dir[0] != '/')
        GTEST_SKIP() << "this user has no home in the password file";
    const std::string expected = std::string(user->pw_dir) + "/.config/qb_colorio/preferences.yaml";
    const EnvGuard variable("XDG_CONFIG_HOME");
    EnvGuard home("HOME");
    EXPECT_EQ(PreferenceFile::get_default_path().view(), expected);
    for (const char* value : {"relative", ""}) {
        home.set(value);
        EXPECT_EQ(PreferenceFile::get_default_path().view(), expected) << value;
    }
}

TEST(PreferencePath, WithoutAPathNothingIsSaved) {
    RecordingLog log;
    StandaloneApp app;
    PreferenceFile preferences("");
    EXPECT_TRUE(preferences.load(app));
    EXPECT_FALSE(preferences.save(app, save_nothing));
    EXPECT_TRUE(log.contains("Preferences: cannot save ''"));
}

} // namespace
