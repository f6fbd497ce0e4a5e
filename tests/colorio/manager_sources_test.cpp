#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include "tests/colorio/manager_sources_fixture.h"

using testing::ElementsAre;
using testing::IsEmpty;

using ManagerUseFile = ManagerSources;

TEST_F(ManagerUseFile, SwitchingItOnMakesTheFileActiveAndPublishesIt) {
    use_file(write_file("film.ocio", FILM));
    EXPECT_FALSE(manager.is_using_tavelion_config());
    EXPECT_THAT(spaces(), ElementsAre("film"));
    EXPECT_THAT(strings(manager.get_display_view_names()), ElementsAre("Monitor.Film"));
    EXPECT_EQ(str(manager.get_ROLE_SCENE_LINEAR()), "film");
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(ManagerUseFile, ReadingAFileSettlesSceneLinearTwiceAndRaisesEachListOnce) {
    use_file(write_file("film.ocio", FILM));
    EXPECT_THAT(events.take(),
                ElementsAre(SCENE_LINEAR_EVENT, SCENE_LINEAR_EVENT, CDL_LIST_EVENT, LUT_LIST_EVENT));
}

TEST_F(ManagerUseFile, ListenersOfTheListEventSeeTheNewConfiguration) {
    std::vector<std::string> seen;
    events.on_event = [&](const std::string& event) {
        if (event == LUT_LIST_EVENT)
            seen = spaces();
    };
    use_file(write_file("film.ocio", FILM));
    EXPECT_THAT(seen, ElementsAre("film"));
}

TEST_F(ManagerUseFile, TheBuiltInConfigurationIsStillActiveWhileSceneLinearIsSettled) {
    std::vector<bool> built_in;
    events.on_event = [&](const std::string& event) {
        if (event == SCENE_LINEAR_EVENT)
            built_in.push_back(manager.is_using_tavelion_config());
    };
    use_file(write_file("film.ocio", FILM));
    EXPECT_THAT(built_in, ElementsAre(true, true));
}

TEST_F(ManagerUseFile, SwitchingItOffBringsTheBuiltInConfigurationBack) {
    use_file_and_forget(write_file("film.ocio", FILM));
    manager.use_file_config(false);
    EXPECT_TRUE(manager.is_using_tavelion_config());
    EXPECT_THAT(spaces(), ElementsAre("sRGB", "Cineon", "linear"));
    EXPECT_EQ(str(manager.get_ROLE_SCENE_LINEAR()), "linear");
    EXPECT_THAT(events.take(), ElementsAre(SCENE_LINEAR_EVENT, CDL_LIST_EVENT, LUT_LIST_EVENT));
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(ManagerUseFile, SwitchingItOffAgainPublishesAgain) {
    manager.use_file_config(false);
    EXPECT_THAT(events.take(), ElementsAre(SCENE_LINEAR_EVENT, CDL_LIST_EVENT, LUT_LIST_EVENT));
    EXPECT_EQ(manager.get_tavelion_color_spaces().get_count(), 3u);
}

TEST_F(ManagerUseFile, SwitchingTheSamePathOnAgainPublishesAgainWithoutCheckingTheFile) {
    const std::string film = write_file("film.ocio", FILM);
    use_file_and_forget(film);
    manager.use_file_config(true);
    EXPECT_THAT(events.take(), ElementsAre(SCENE_LINEAR_EVENT, CDL_LIST_EVENT, LUT_LIST_EVENT));
    EXPECT_THAT(take_log(), IsEmpty());
    EXPECT_THAT(spaces(), ElementsAre("film"));
}

TEST_F(ManagerUseFile, ComingBackToTheSamePathChecksNothing) {
    use_file_and_forget(write_file("film.ocio", FILM));
    manager.use_file_config(false);
    events.take();
    manager.use_file_config(true);
    EXPECT_THAT(events.take(), ElementsAre(SCENE_LINEAR_EVENT, CDL_LIST_EVENT, LUT_LIST_EVENT));
    EXPECT_THAT(spaces(), ElementsAre("film"));
}

// The path is the current one, so the existence of the file is not checked; reading it fails.
TEST_F(ManagerUseFile, AFileThatVanishedKeepsItsLastConfigurationWithALinearSpaceAdded) {
    const std::string film = write_file("film.ocio", FILM);
    use_file_and_forget(film);
    std::remove(film.c_str());

    manager.use_file_config(true);

    EXPECT_THAT(take_log(), ElementsAre(OcioExceptionAt(2)));
    EXPECT_FALSE(manager.is_using_tavelion_config());
    EXPECT_THAT(spaces(), ElementsAre("film", "linear"));
    EXPECT_EQ(str(manager.get_ROLE_SCENE_LINEAR()), "linear");
    EXPECT_THAT(events.take(), ElementsAre(SCENE_LINEAR_EVENT, CDL_LIST_EVENT, LUT_LIST_EVENT));
}

TEST_F(ManagerUseFile, AnotherPathIsCheckedAndReplacesTheFirst) {
    use_file_and_forget(write_file("film.ocio", FILM));
    use_file(write_file("video.ocio", VIDEO));
    EXPECT_THAT(spaces(), ElementsAre("video"));
    EXPECT_THAT(events.take(),
                ElementsAre(SCENE_LINEAR_EVENT, SCENE_LINEAR_EVENT, CDL_LIST_EVENT, LUT_LIST_EVENT));
}

TEST_F(ManagerUseFile, AReplacedConfigurationLivesOnWithItsHolders) {
    use_file(write_file("film.ocio", FILM));
    const auto held = manager.get_config();
    use_file(write_file("video.ocio", VIDEO));
    EXPECT_NE(manager.get_config(), held);
    EXPECT_EQ(held.use_count(), 1);
}

TEST_F(ManagerUseFile, TheNameListsAreTheSameObjectsAfterASwitch) {
    const CoreBasicArray<CoreString>& names = manager.get_color_space_names();
    const CoreBasicArray<CoreString>& views = manager.get_display_view_names();
    use_file(write_file("film.ocio", FILM));
    EXPECT_EQ(&manager.get_color_space_names(), &names);
    EXPECT_EQ(&manager.get_display_view_names(), &views);
    EXPECT_THAT(strings(names), ElementsAre("film"));
    EXPECT_THAT(strings(views), ElementsAre("Monitor.Film"));
}

// The application's switch is off while the file config is selected: the check settles the built-in
// scene-linear space, the switch the file's.
TEST_F(ManagerUseFile, TheArgumentDecidesEvenWhenTheApplicationDoesNotWantTheFile) {
    std::vector<std::string> scene_linear;
    events.on_event = [&](const std::string& event) {
        if (event == SCENE_LINEAR_EVENT)
            scene_linear.push_back(str(manager.get_ROLE_SCENE_LINEAR()));
    };
    app.color_space_file_path = write_file("film.ocio", FILM).c_str();
    manager.use_file_config(true);
    EXPECT_THAT(spaces(), ElementsAre("film"));
    EXPECT_THAT(scene_linear, ElementsAre("linear", "film"));
}

TEST_F(ManagerUseFile, AListenerMaySwitchInTurn) {
    bool switched = false;
    events.on_event = [&](const std::string& event) {
        if (event == LUT_LIST_EVENT && !std::exchange(switched, true))
            manager.use_file_config(false);
    };
    use_file(write_file("film.ocio", FILM));
    EXPECT_TRUE(manager.is_using_tavelion_config());
    EXPECT_THAT(spaces(), ElementsAre("sRGB", "Cineon", "linear"));
}
