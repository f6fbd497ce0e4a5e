#include "standalone/preferences.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "tests/standalone/preferences_fixture.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

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

} // namespace
