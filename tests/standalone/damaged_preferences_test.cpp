#include "standalone/preferences.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "tests/standalone/preferences_fixture.h"
#include "tests/support/other_user.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

TEST_F(Preferences, LoadingADamagedFileChangesNothing) {
    const std::string damaged = "color_space_file_path: \"/a";
    folder.write("config/qb_colorio/preferences.yaml", damaged);
    app.set_color_space_file_path("/set/before");
    EXPECT_FALSE(preferences.load(app));
    EXPECT_EQ(app.get_color_space_file_path(), "/set/before");
    EXPECT_EQ(folder.read("config/qb_colorio/preferences.yaml"), damaged);
    EXPECT_THAT(log.get_lines(),
                ElementsAre(RecordingLog::Line{LOG_ERROR, "Preferences: " + path +
                                                              ":1:27: illegal EOF in scalar; the file is "
                                                              "not used.\n"}));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.file("config/qb_colorio")), {}), 1);
}

TEST_F(Preferences, ADamagedFileIsKnownByItsMarkerOrByAFieldInAnyLine) {
    for (const char* damaged :
         {"file_type:'qb_colorio preferences'\n{", "\n\nfile_type: qb_colorio preferences\n{",
          "window: 1\nno colon\ncolor_space_file_path: \"/a", "use_color_space_file: \"1\n:\n"}) {
        folder.write("config/qb_colorio/preferences.yaml", damaged);
        EXPECT_TRUE(preferences.save(app, save_nothing)) << damaged;
        EXPECT_EQ(folder.read("config/qb_colorio/preferences.yaml.damaged-1"), damaged);
        std::filesystem::remove(path + ".damaged-1");
    }
}

TEST_F(Preferences, ADamagedFileIsSetAsideBeforeASave) {
    const std::string damaged = std::string(MARKER) + "{";
    folder.write("config/qb_colorio/preferences.yaml", damaged);
    folder.write("config/qb_colorio/preferences.yaml.damaged-1", "earlier");
    EXPECT_TRUE(preferences.load_to_change(app));
    EXPECT_TRUE(preferences.save(app, save_nothing));
    EXPECT_EQ(folder.read("config/qb_colorio/preferences.yaml.damaged-1"), "earlier");
    EXPECT_EQ(folder.read("config/qb_colorio/preferences.yaml.damaged-2"), damaged);
    EXPECT_EQ(describe_file(), std::string(DEFAULTS) + "color_management=");
    EXPECT_TRUE(log.contains("the file is now '" + path + ".damaged-2'"));
}

TEST_F(Preferences, ADamagedFileBehindLinksIsSetAsideAndTheLinksStay) {
    const std::string damaged = std::string(MARKER) + "{";
    folder.write("synced/preferences.yaml", damaged);
    std::filesystem::create_directories(folder.file("config/qb_colorio"));
    std::filesystem::create_symlink("../../link", path);
    std::filesystem::create_symlink("synced/preferences.yaml", folder.file("link"));
    EXPECT_TRUE(preferences.load_to_change(app));
    EXPECT_TRUE(preferences.save(app, save_nothing));
    EXPECT_EQ(folder.read("synced/preferences.yaml.damaged-1"), damaged);
    EXPECT_EQ(std::filesystem::read_symlink(path), "../../link");
    EXPECT_EQ(std::filesystem::read_symlink(folder.file("link")), "synced/preferences.yaml");
    EXPECT_EQ(folder.read("synced/preferences.yaml"), folder.read("config/qb_colorio/preferences.yaml"));
    EXPECT_THAT(folder.read("synced/preferences.yaml"), StartsWith(MARKER));
    EXPECT_TRUE(log.contains("synced/preferences.yaml.damaged-1'"));
}

TEST_F(Preferences, EveryFileSaysInItsFirstLineWhatItIs) {
    ASSERT_TRUE(preferences.save(app, save_one_space));
    EXPECT_THAT(folder.read("config/qb_colorio/preferences.yaml"), StartsWith(MARKER));
}

TEST_F(Preferences, FilesOfEarlierVersionsGetTheMarkerWhenTheyAreSaved) {
    for (const char* earlier :
         {"default_color_space_name: \"plate\"\n", "color_management: {space: [plate]}\n"}) {
        folder.write("config/qb_colorio/preferences.yaml", earlier);
        EXPECT_TRUE(preferences.load_to_change(app)) << earlier;
        EXPECT_TRUE(preferences.save(app, {})) << earlier;
        EXPECT_THAT(folder.read("config/qb_colorio/preferences.yaml"),
                    AllOf(StartsWith(MARKER), HasSubstr("plate")));
    }
}

TEST_F(Preferences, NoOtherFileIsUsedRenamedOrOverwritten) {
    for (const char* content : {"ocio_profile_version: 1\nroles: {default: raw}\ncolorspaces: []\n", "", "{}",
                                "{", "color", "\x89PNG\r\n\x1a\n\0\0", "color_management: {theme: dark}\n",
                                "file_type: mapping\ndefault_color_space_name: raw\n",
                                "file_type: \"mapping\"\ndefault_color_space_name: \"raw\n", "- a: b\n"}) {
        folder.write("config/qb_colorio/preferences.yaml", content);
        EXPECT_FALSE(preferences.load(app)) << content;
        EXPECT_FALSE(preferences.load_to_change(app)) << content;
        EXPECT_FALSE(preferences.save(app, save_one_space)) << content;
        EXPECT_EQ(folder.read("config/qb_colorio/preferences.yaml"), content);
        EXPECT_EQ(app.get_default_color_space_name(), "linear");
        EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.file("config/qb_colorio")), {}),
                  1);
    }
    EXPECT_TRUE(log.contains("is not a preferences file"));
}

TEST_F(Preferences, WhoWasRefusedAChangeKeepsNobodyWaiting) {
    folder.write("config/qb_colorio/preferences.yaml", "{}");
    EXPECT_FALSE(preferences.load_to_change(app));
    PreferenceFile other(path.c_str());
    EXPECT_FALSE(other.load_to_change(app));
    std::filesystem::remove(path);
    EXPECT_TRUE(other.save(app, save_nothing));
}

TEST_F(Preferences, PipesAndDevicesAreRefusedAndNothingWaits) {
    ASSERT_EQ(mkfifo(folder.file("pipe").c_str(), 0600), 0);
    for (const std::string& special : {folder.file("pipe"), std::string("/dev/zero")}) {
        PreferenceFile other(special.c_str());
        EXPECT_FALSE(other.load(app));
        EXPECT_FALSE(other.load_to_change(app));
        EXPECT_FALSE(other.save(app, save_nothing));
    }
    EXPECT_FALSE(std::filesystem::is_regular_file(folder.file("pipe")));
    EXPECT_EQ(log.count(LOG_ERROR), 6u);
}

TEST_F(Preferences, AFileThatCannotBeReadIsNotOverwritten) {
    std::filesystem::create_directories(path);
    EXPECT_FALSE(preferences.load(app));
    EXPECT_FALSE(preferences.save(app, save_nothing));
    EXPECT_TRUE(std::filesystem::is_directory(path));
    EXPECT_THAT(log.get_lines(),
                testing::Each(RecordingLog::Line{LOG_ERROR, "Preferences: cannot read '" + path +
                                                                "': Is a directory.\n"}));
    EXPECT_EQ(log.get_lines().size(), 2u);
}

TEST_F(Preferences, ADamagedFileThatCannotBeRenamedIsNotOverwritten) {
    const std::string damaged = std::string(MARKER) + "{";
    folder.write("open/preferences.yaml", damaged);
    chmod(folder.get_path().c_str(), 0755);
    chmod(folder.file("open").c_str(), 0555);
    PreferenceFile other(folder.file("open/preferences.yaml").c_str());
    {
        const WithoutPrivileges unprivileged;
        EXPECT_FALSE(other.load(app));
        EXPECT_FALSE(other.save(app, save_nothing));
    }
    chmod(folder.file("open").c_str(), 0755);
    EXPECT_EQ(folder.read("open/preferences.yaml"), damaged);
    EXPECT_TRUE(log.contains("the file cannot be renamed either"));
}

TEST_F(Preferences, AFolderThatCannotBeMadeIsAnErrorOnSaveOnly) {
    folder.write("config", "a file");
    EXPECT_FALSE(preferences.save(app, save_nothing));
    EXPECT_THAT(log.get_lines(),
                ElementsAre(RecordingLog::Line{LOG_ERROR, "Preferences: cannot save '" + path +
                                                              "': Not a directory.\n"}));
}

} // namespace
