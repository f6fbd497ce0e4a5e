#include "standalone/preferences.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "host/parser/parser_entry.h"
#include "host/parser/parser_file.h"
#include "host/parser/parser_group.h"
#include "standalone/standalone_app.h"
#include "tests/standalone/described_entries.h"
#include "tests/support/env_guard.h"
#include "tests/support/other_user.h"
#include "tests/support/recording_log.h"
#include "tests/support/temp_dir.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

int mode_of(const std::string& path) {
    struct stat status;
    return stat(path.c_str(), &status) == 0 ? static_cast<int>(status.st_mode & 07777) : -1;
}

// Saves as the module does: resets the entry, and writes its entries.
bool save_one_space(ParserEntry* entry) {
    entry->reset();
    ParserGroup& group = *entry->add_group(nullptr);
    group.add_entry("space", 0, 0)->add_string("plate");
    group.add_entry("extension", 0, 0)->add_string("OpenEXR");
    return true;
}

// The module when it has nothing to save.
bool save_nothing(ParserEntry* entry) {
    entry->reset();
    return false;
}

class Preferences : public testing::Test {
protected:
    std::string describe_file() {
        ParserFile file;
        EXPECT_TRUE(file.read(path.c_str(), "", "")) << file.get_error().get_data();
        return describe(file.get_root());
    }

    RecordingLog log;
    TempDir folder;
    std::string path = folder.file("config/qb_colorio/preferences.yaml");
    PreferenceFile preferences{path.c_str()};
    StandaloneApp app;
};

constexpr const char* MARKER = "file_type: \"qb_colorio preferences\"\n";

constexpr const char* DEFAULTS =
    "file_type=s\"qb_colorio preferences\"; color_space_file_path=s\"\"; cdl_library_file_path=s\"\"; "
    "default_color_space_name=s\"linear\"; color_space_by_extension_file_path=s\"\"; "
    "use_color_space_file=i0; use_color_space_by_extension_file=i0; ";

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

TEST_F(Preferences, ValuesThatMakeNoSenseAreNamedAndIgnored) {
    folder.write("config/qb_colorio/preferences.yaml", "color_space_file_path: {a: 1}\n"
                                                       "use_color_space_file: perhaps\n"
                                                       "cdl_library_file_path: 12\n"
                                                       "use_color_space_by_extension_file: -1\n");
    EXPECT_TRUE(preferences.load(app));
    EXPECT_EQ(app.get_cdl_library_file_path(), "12");
    EXPECT_FALSE(app.get_use_color_space_file());
    const auto ignored = [&](const char* line, const char* name) {
        return RecordingLog::Line{LOG_WARNING,
                                  path + line + ": the value of '" + name + "' is invalid and ignored.\n"};
    };
    EXPECT_THAT(log.get_lines(),
                ElementsAre(ignored(":1", "color_space_file_path"), ignored(":2", "use_color_space_file"),
                            ignored(":4", "use_color_space_by_extension_file")));
}

TEST_F(Preferences, SwitchesAreNumbersOrWords) {
    app.set_use_color_space_file(true);
    app.set_use_color_space_by_extension_file(7);
    folder.write("config/qb_colorio/preferences.yaml",
                 "use_color_space_file: 0\nuse_color_space_by_extension_file: 0\n");
    EXPECT_TRUE(preferences.load(app));
    EXPECT_FALSE(app.get_use_color_space_file());
    EXPECT_EQ(app.get_use_color_space_by_extension_file(), 0u);
    folder.write("config/qb_colorio/preferences.yaml",
                 "use_color_space_file: 2\nuse_color_space_by_extension_file: True\n");
    EXPECT_TRUE(preferences.load(app));
    EXPECT_TRUE(app.get_use_color_space_file());
    EXPECT_EQ(app.get_use_color_space_by_extension_file(), 1u);
    EXPECT_THAT(log.get_lines(), IsEmpty());
}

TEST_F(Preferences, ListsInThePlaceOfOneValueAreIgnored) {
    folder.write("config/qb_colorio/preferences.yaml", "use_color_space_file: [1, 1]\n"
                                                       "color_space_file_path: [a, b]\n"
                                                       "use_color_space_by_extension_file: FALSE\n");
    app.set_use_color_space_by_extension_file(1);
    EXPECT_TRUE(preferences.load(app));
    EXPECT_FALSE(app.get_use_color_space_file());
    EXPECT_EQ(app.get_color_space_file_path(), "");
    EXPECT_EQ(app.get_use_color_space_by_extension_file(), 0u);
    EXPECT_THAT(log.get_lines().size(), 2u);
}

TEST_F(Preferences, ASwitchTooLargeForTheFileIsSavedAsTheLargestNumber) {
    app.set_use_color_space_by_extension_file(0xFFFFFFFFu);
    ASSERT_TRUE(preferences.save(app, save_nothing));
    EXPECT_THAT(describe_file(), HasSubstr("use_color_space_by_extension_file=i2147483647"));
}

class SavingListener : public EventObject {
public:
    SavingListener(PreferenceFile& preferences, StandaloneApp& app) : preferences(preferences), app(app) {}
    void on_change(AppBase&, const EventInfo&, OfObject*) {
        ++saves;
        saved = preferences.save(app, save_nothing);
    }

    PreferenceFile& preferences;
    StandaloneApp& app;
    int saves = 0;
    bool saved = false;
};

TEST_F(Preferences, AreNotSavedWhileTheyAreOnlyPartlyLoaded) {
    const std::string content = "cdl_library_file_path: /looks.ccc\nuse_color_space_file: 1\n";
    folder.write("config/qb_colorio/preferences.yaml", content);
    SavingListener listener(preferences, app);
    const CoreString event("EVT_ID_APPLICATION_CDL_FILE_PATH_CHANGED");
    listener.connect(app, event, &SavingListener::on_change, nullptr);
    EXPECT_TRUE(preferences.load(app));
    EXPECT_EQ(listener.saves, 1);
    EXPECT_FALSE(listener.saved);
    EXPECT_TRUE(app.get_use_color_space_file());
    EXPECT_EQ(folder.read("config/qb_colorio/preferences.yaml"), content);
    app.set_cdl_library_file_path("");
    EXPECT_TRUE(listener.saved);
}

class LoadingListener : public EventObject {
public:
    LoadingListener(PreferenceFile& preferences, StandaloneApp& app) : preferences(preferences), app(app) {}
    void on_change(AppBase&, const EventInfo&, OfObject*) { loaded = preferences.load(app); }

    PreferenceFile& preferences;
    StandaloneApp& app;
    bool loaded = false;
};

TEST_F(Preferences, MayBeLoadedFromAnEventThatLoadingRaised) {
    folder.write("config/qb_colorio/preferences.yaml",
                 "cdl_library_file_path: /looks.ccc\nuse_color_space_file: 1\n");
    LoadingListener listener(preferences, app);
    const CoreString event("EVT_ID_APPLICATION_CDL_FILE_PATH_CHANGED");
    listener.connect(app, event, &LoadingListener::on_change, nullptr);
    EXPECT_TRUE(preferences.load(app));
    EXPECT_TRUE(listener.loaded);
    EXPECT_TRUE(app.get_use_color_space_file());
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
