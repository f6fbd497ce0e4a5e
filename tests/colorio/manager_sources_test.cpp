#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include "tests/colorio/manager_sources_fixture.h"

using testing::ElementsAre;
using testing::IsEmpty;

using ManagerUseFile = ManagerSources;
using ManagerUseEnvironment = ManagerSources;

// Switching the file on and off

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

// Files that are missing or bad

TEST_F(ManagerUseFile, AMissingFileLeavesTheBuiltInConfigurationAndTellsNobody) {
    const std::string missing = path_of("missing.ocio");
    use_file(missing);
    EXPECT_THAT(take_log(), ElementsAre(LogLine{2, not_found(missing)}));
    EXPECT_TRUE(manager.is_using_tavelion_config());
    EXPECT_THAT(events.take(), IsEmpty());
}

TEST_F(ManagerUseFile, AFolderIsNoFile) {
    use_file(folder.get_path());
    EXPECT_THAT(take_log(), ElementsAre(LogLine{2, not_found(folder.get_path())}));
    EXPECT_TRUE(manager.is_using_tavelion_config());
}

TEST_F(ManagerUseFile, AMissingFileAfterAGoodOneFallsBackWithTheGoodOnesName) {
    const std::string film = write_file("film.ocio", FILM);
    const std::string missing = path_of("missing.ocio");
    use_file_and_forget(film);
    use_file(missing);
    EXPECT_THAT(take_log(), ElementsAre(LogLine{2, not_found(missing)}, LogLine{2, falling_back_from(film)}));
    EXPECT_TRUE(manager.is_using_tavelion_config());
}

TEST_F(ManagerUseFile, FallingBackLeavesListsAndEventsAlone) {
    use_file_and_forget(write_file("film.ocio", FILM));
    use_file(path_of("missing.ocio"));
    EXPECT_TRUE(manager.is_using_tavelion_config());
    EXPECT_THAT(spaces(), ElementsAre("film"));
    EXPECT_THAT(strings(manager.get_display_view_names()), ElementsAre("Monitor.Film"));
    EXPECT_EQ(str(manager.get_ROLE_SCENE_LINEAR()), "film");
    EXPECT_THAT(events.take(), IsEmpty());
}

TEST_F(ManagerUseFile, AFileIsCheckedAgainAfterAMissingOne) {
    const std::string film = write_file("film.ocio", FILM);
    use_file(film);
    use_file_and_forget(path_of("missing.ocio"));
    use_file(film);
    EXPECT_THAT(events.take(),
                ElementsAre(SCENE_LINEAR_EVENT, SCENE_LINEAR_EVENT, CDL_LIST_EVENT, LUT_LIST_EVENT));
    EXPECT_FALSE(manager.is_using_tavelion_config());
}

TEST_F(ManagerUseFile, AnEmptyPathIsNoMissingFile) {
    use_file("");
    EXPECT_THAT(take_log(), IsEmpty());
    EXPECT_TRUE(manager.is_using_tavelion_config());
    EXPECT_THAT(events.take(), IsEmpty());
}

TEST_F(ManagerUseFile, AnEmptyPathAfterAGoodFileFallsBackWithThatFilesName) {
    const std::string film = write_file("film.ocio", FILM);
    use_file_and_forget(film);
    use_file("");
    EXPECT_THAT(take_log(), ElementsAre(LogLine{2, falling_back_from(film)}));
    EXPECT_TRUE(manager.is_using_tavelion_config());
    EXPECT_THAT(events.take(), IsEmpty());
}

TEST_F(ManagerUseFile, AfterAnEmptyPathTheFileIsStillKnownGood) {
    const std::string film = write_file("film.ocio", FILM);
    use_file(film);
    use_file_and_forget("");
    use_file(film);
    EXPECT_THAT(events.take(), ElementsAre(SCENE_LINEAR_EVENT, CDL_LIST_EVENT, LUT_LIST_EVENT));
    EXPECT_THAT(spaces(), ElementsAre("film"));
}

TEST_F(ManagerUseFile, AConfigurationThatFailsTheCheckIsReportedAndNotUsed) {
    const std::string broken = write_file("broken.ocio", ROLE_OF_UNKNOWN_SPACE);
    use_file(broken);
    EXPECT_THAT(take_log(), ElementsAre(OcioExceptionAt(1), LogLine{2, falling_back_from(broken)}));
    EXPECT_TRUE(manager.is_using_tavelion_config());
    EXPECT_THAT(events.take(), IsEmpty());
}

TEST_F(ManagerUseFile, AConfigurationThatFailedTheCheckIsCheckedAgain) {
    const std::string path = write_file("config.ocio", ROLE_OF_UNKNOWN_SPACE);
    use_file_and_forget(path);
    write_file("config.ocio", FILM);
    manager.use_file_config(true);
    EXPECT_THAT(take_log(), IsEmpty());
    EXPECT_THAT(spaces(), ElementsAre("film"));
}

TEST_F(ManagerUseFile, ABrokenConfigurationAfterAGoodOneIsNotKnownGoodEither) {
    const std::string film = write_file("film.ocio", FILM);
    const std::string broken = write_file("broken.ocio", ROLE_OF_UNKNOWN_SPACE);
    use_file(film);
    use_file_and_forget(broken);
    use_file(broken);
    EXPECT_THAT(take_log(), ElementsAre(OcioExceptionAt(1), LogLine{2, falling_back_from(broken)}));
    EXPECT_TRUE(manager.is_using_tavelion_config());
}

// One warning for the check, then one for each role, whose look-up reads the file too.
TEST_F(ManagerUseFile, AFileThatIsNoConfigurationIsReportedByTheCheckAndByEachRole) {
    const std::string garbage = write_file("garbage.ocio", NO_CONFIGURATION);
    use_file(garbage);
    EXPECT_THAT(take_log(),
                ElementsAre(OcioExceptionAt(1), OcioExceptionAt(2), OcioExceptionAt(2), OcioExceptionAt(2),
                            OcioExceptionAt(2), OcioExceptionAt(2), OcioExceptionAt(2), OcioExceptionAt(2),
                            OcioExceptionAt(2), LogLine{2, falling_back_from(garbage)}));
    EXPECT_TRUE(manager.is_using_tavelion_config());
    EXPECT_THAT(events.take(), IsEmpty());
}

TEST_F(ManagerUseFile, AnEmptyFileIsNoConfiguration) {
    use_file(write_file("empty.ocio", ""));
    EXPECT_TRUE(manager.is_using_tavelion_config());
    EXPECT_THAT(events.take(), IsEmpty());
}

TEST_F(ManagerUseFile, ALogThatWantsErrorsOnlyIsHandedNoWarnings) {
    log.set_level(1);
    use_file(path_of("missing.ocio"));
    EXPECT_THAT(take_log(), IsEmpty());
    use_file(write_file("garbage.ocio", NO_CONFIGURATION));
    EXPECT_THAT(take_log(), ElementsAre(OcioExceptionAt(1)));
}

// The file was good when it was checked and is read again by the second switch, which checks nothing but
// the result.
TEST_F(ManagerUseFile, AConfigurationEditedIntoAnInvalidOneStaysActiveAndIsReportedTwice) {
    const std::string path = write_file("config.ocio", FILM);
    use_file_and_forget(path);
    write_file("config.ocio", ROLE_OF_UNKNOWN_SPACE);

    manager.use_file_config(true);

    EXPECT_THAT(take_log(), ElementsAre(LogLine{1, INVALID}, OcioExceptionAt(1), LogLine{1, INVALID},
                                        OcioExceptionAt(1)));
    EXPECT_FALSE(manager.is_using_tavelion_config());
    EXPECT_THAT(spaces(), ElementsAre("film", "linear"));
    EXPECT_THAT(events.take(), ElementsAre(SCENE_LINEAR_EVENT, CDL_LIST_EVENT, LUT_LIST_EVENT));
}

// The environment variable OCIO

TEST_F(ManagerUseEnvironment, StandsInForAnEmptyPath) {
    const std::string studio = write_file("studio.ocio", STUDIO);
    ocio_variable.set(studio);
    use_file("");
    EXPECT_THAT(take_log(), ElementsAre(LogLine{2, defaulting_to(studio)}));
    EXPECT_FALSE(manager.is_using_tavelion_config());
    EXPECT_THAT(spaces(), ElementsAre("studio"));
    EXPECT_EQ(str(manager.get_ROLE_SCENE_LINEAR()), "studio");
    EXPECT_THAT(events.take(),
                ElementsAre(SCENE_LINEAR_EVENT, SCENE_LINEAR_EVENT, CDL_LIST_EVENT, LUT_LIST_EVENT));
}

TEST_F(ManagerUseEnvironment, StandsInForAMissingFile) {
    const std::string studio = write_file("studio.ocio", STUDIO);
    const std::string missing = path_of("missing.ocio");
    ocio_variable.set(studio);
    use_file(missing);
    EXPECT_THAT(take_log(), ElementsAre(LogLine{2, not_found(missing)}, LogLine{2, defaulting_to(studio)}));
    EXPECT_THAT(spaces(), ElementsAre("studio"));
}

TEST_F(ManagerUseEnvironment, GivesWayToAFileThatExists) {
    ocio_variable.set(write_file("studio.ocio", STUDIO));
    use_file(write_file("film.ocio", FILM));
    EXPECT_THAT(spaces(), ElementsAre("film"));
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(ManagerUseEnvironment, DoesNotStandInForAFileThatFailsTheCheck) {
    ocio_variable.set(write_file("studio.ocio", STUDIO));
    use_file(write_file("broken.ocio", ROLE_OF_UNKNOWN_SPACE));
    EXPECT_TRUE(manager.is_using_tavelion_config());
}

TEST_F(ManagerUseEnvironment, IsNotReadWhileTheFileIsSwitchedOff) {
    ocio_variable.set(write_file("studio.ocio", STUDIO));
    manager.use_file_config(false);
    EXPECT_TRUE(manager.is_using_tavelion_config());
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(ManagerUseEnvironment, IsRememberedAsFromEnv) {
    ocio_variable.set(write_file("studio.ocio", STUDIO));
    use_file_and_forget("");
    ocio_variable.unset();
    manager.use_file_config(true);
    EXPECT_THAT(take_log(), ElementsAre(LogLine{2, falling_back_from("FROM_ENV")}));
    EXPECT_TRUE(manager.is_using_tavelion_config());
}

TEST_F(ManagerUseEnvironment, IsCheckedAgainByEverySwitchSinceNoPathEqualsIt) {
    const std::string studio = write_file("studio.ocio", STUDIO);
    ocio_variable.set(studio);
    use_file_and_forget("");
    manager.use_file_config(true);
    EXPECT_THAT(take_log(), ElementsAre(LogLine{2, defaulting_to(studio)}));
    EXPECT_THAT(events.take(),
                ElementsAre(SCENE_LINEAR_EVENT, SCENE_LINEAR_EVENT, CDL_LIST_EVENT, LUT_LIST_EVENT));
}

TEST_F(ManagerUseEnvironment, MayChangeBetweenTwoSwitches) {
    ocio_variable.set(write_file("studio.ocio", STUDIO));
    use_file("");
    ocio_variable.set(write_file("video.ocio", VIDEO));
    use_file("");
    EXPECT_THAT(spaces(), ElementsAre("video"));
}

TEST_F(ManagerUseEnvironment, ThatNamesAMissingFileLeavesTheBuiltInConfiguration) {
    const std::string nowhere = path_of("nowhere.ocio");
    ocio_variable.set(nowhere);
    use_file("");
    const std::vector<LogLine> lines = take_log();
    ASSERT_GE(lines.size(), 2u);
    EXPECT_EQ(lines[0], (LogLine{2, defaulting_to(nowhere)}));
    EXPECT_THAT(lines[1], OcioExceptionAt(1));
    EXPECT_TRUE(manager.is_using_tavelion_config());
    EXPECT_THAT(events.take(), IsEmpty());
}

TEST_F(ManagerUseEnvironment, ThatFailsTheCheckLeavesTheBuiltInConfiguration) {
    const std::string broken = write_file("broken.ocio", ROLE_OF_UNKNOWN_SPACE);
    ocio_variable.set(broken);
    use_file("");
    EXPECT_THAT(take_log(), ElementsAre(LogLine{2, defaulting_to(broken)}, OcioExceptionAt(1)));
    EXPECT_TRUE(manager.is_using_tavelion_config());
}

TEST_F(ManagerUseEnvironment, ThatFailsTheCheckKeepsTheNameOfTheLastFileForTheNotice) {
    const std::string film = write_file("film.ocio", FILM);
    const std::string broken = write_file("broken.ocio", ROLE_OF_UNKNOWN_SPACE);
    use_file_and_forget(film);
    ocio_variable.set(broken);
    use_file("");
    EXPECT_THAT(take_log(), ElementsAre(LogLine{2, defaulting_to(broken)}, OcioExceptionAt(1),
                                        LogLine{2, falling_back_from(film)}));
}
