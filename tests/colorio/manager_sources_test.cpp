#include <cstdio>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "colorio/color_io_converter.h"
#include "colorio/color_io_manager.h"
#include "host/gmath/gmath_vec4.h"
#include "tests/colorio/manager_fixture.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

std::string not_found(const std::string& path) {
    return "Color Management: OCIO configuration file '" + path + "' not found.\n";
}

std::string falling_back_from(const std::string& path) {
    return "Color Management: OCIO configuration file '" + path +
           "' not found. Defaulting to Tavelion built-in configuration.\n";
}

std::string defaulting_to(const std::string& path) {
    return "Color Management: defaulting to configuration file '" + path +
           "' from environment variable OCIO.\n";
}

const char INVALID[] = "Color Management: invalid OCIO configuration.\n";

// Three configurations that load and pass the check, told apart by the name of their only space.
const std::string FILM =
    config_text({{"", "film"}}, {{"Monitor", "Film", "film"}}, {{"scene_linear", "film"}});
const std::string VIDEO =
    config_text({{"", "video"}}, {{"Monitor", "Video", "video"}}, {{"scene_linear", "video"}});
const std::string STUDIO =
    config_text({{"", "studio"}}, {{"Monitor", "Studio", "studio"}}, {{"scene_linear", "studio"}});
// Loads, and fails the check.
const std::string ROLE_OF_UNKNOWN_SPACE =
    config_text({{"", "film"}}, {{"Monitor", "Film", "film"}}, {{"default", "nowhere"}});
// Does not load.
const char NO_CONFIGURATION[] = "this: [is no configuration";

/// A started manager, its start-up messages and events forgotten.
class ManagerSources : public ManagerTest {
protected:
    ManagerSources() {
        take_log();
        events.take();
    }

    /// The user wants that file, and switches to it.
    void use_file(const std::string& path) {
        want_file(path);
        manager.use_file_config(true);
    }
    /// The user wants that file, and the application tells that the path changed.
    void change_path(const std::string& path) {
        want_file(path);
        manager.update_file_config_path();
    }
    void use_file_and_forget(const std::string& path) {
        use_file(path);
        take_log();
        events.take();
    }
    std::vector<std::string> spaces() const { return strings(manager.get_color_space_names()); }

    ColorIOManager& manager = start_manager();
    EventRecorder events;
};

using ManagerUseFile = ManagerSources;
using ManagerUseEnvironment = ManagerSources;
using ManagerPathChange = ManagerSources;

} // namespace

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

// The path is the one in force, so nobody asks whether the file is still there; reading it fails.
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

// The application says no while somebody switches the file on: the check settles the built-in scene-linear
// space, the switch the file's.
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

// A change of the path

TEST_F(ManagerPathChange, OnlySettlesTheBuiltInSceneLinearWhileNoFileIsWanted) {
    app.color_space_file_path = write_file("film.ocio", FILM).c_str();
    manager.update_file_config_path();
    EXPECT_THAT(events.take(), ElementsAre(SCENE_LINEAR_EVENT));
    EXPECT_THAT(take_log(), IsEmpty());
    EXPECT_TRUE(manager.is_using_tavelion_config());
    EXPECT_THAT(spaces(), ElementsAre("sRGB", "Cineon", "linear"));
}

TEST_F(ManagerPathChange, DoesNotLookForAFileThatIsNotWanted) {
    app.color_space_file_path = path_of("missing.ocio").c_str();
    manager.update_file_config_path();
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(ManagerPathChange, LeavesAnActiveFileThatIsNoLongerWantedActive) {
    use_file_and_forget(write_file("film.ocio", FILM));
    app.use_color_space_file = false;
    manager.update_file_config_path();
    EXPECT_FALSE(manager.is_using_tavelion_config());
    EXPECT_THAT(spaces(), ElementsAre("film"));
    EXPECT_EQ(str(manager.get_ROLE_SCENE_LINEAR()), "linear");
    EXPECT_THAT(events.take(), ElementsAre(SCENE_LINEAR_EVENT));
}

TEST_F(ManagerPathChange, MakesTheWantedFileActiveWithoutTouchingTheCDLList) {
    change_path(write_file("film.ocio", FILM));
    EXPECT_FALSE(manager.is_using_tavelion_config());
    EXPECT_THAT(spaces(), ElementsAre("film"));
    EXPECT_THAT(events.take(), ElementsAre(SCENE_LINEAR_EVENT, LUT_LIST_EVENT));
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(ManagerPathChange, ReadsTheSamePathAgain) {
    const std::string path = write_file("config.ocio", FILM);
    change_path(path);
    write_file("config.ocio", VIDEO);
    change_path(path);
    EXPECT_THAT(spaces(), ElementsAre("video"));
    EXPECT_EQ(str(manager.get_ROLE_SCENE_LINEAR()), "video");
}

TEST_F(ManagerPathChange, AMissingFilePublishesTheBuiltInConfiguration) {
    const std::string missing = path_of("missing.ocio");
    use_file_and_forget(write_file("film.ocio", FILM));
    change_path(missing);
    EXPECT_THAT(take_log(), ElementsAre(LogLine{2, not_found(missing)}));
    EXPECT_TRUE(manager.is_using_tavelion_config());
    EXPECT_THAT(spaces(), ElementsAre("sRGB", "Cineon", "linear"));
    EXPECT_EQ(str(manager.get_ROLE_SCENE_LINEAR()), "linear");
    EXPECT_THAT(events.take(), ElementsAre(SCENE_LINEAR_EVENT, LUT_LIST_EVENT));
}

TEST_F(ManagerPathChange, AnEmptyPathPublishesTheBuiltInConfigurationWithoutAWord) {
    use_file_and_forget(write_file("film.ocio", FILM));
    change_path("");
    EXPECT_THAT(take_log(), IsEmpty());
    EXPECT_THAT(spaces(), ElementsAre("sRGB", "Cineon", "linear"));
    EXPECT_THAT(events.take(), ElementsAre(SCENE_LINEAR_EVENT, LUT_LIST_EVENT));
}

TEST_F(ManagerPathChange, AFailureReleasesTheFileConfiguration) {
    use_file(write_file("film.ocio", FILM));
    const std::weak_ptr film = manager.get_config();
    change_path(path_of("missing.ocio"));
    EXPECT_TRUE(film.expired());
}

TEST_F(ManagerPathChange, AFailureReleasesAFileConfigurationThatIsNotActiveToo) {
    use_file(write_file("film.ocio", FILM));
    const std::weak_ptr film = manager.get_config();
    manager.use_file_config(false);
    EXPECT_FALSE(film.expired());
    change_path(path_of("missing.ocio"));
    EXPECT_TRUE(film.expired());
}

TEST_F(ManagerPathChange, AFileThatFailsTheCheckPublishesTheBuiltInConfiguration) {
    use_file_and_forget(write_file("film.ocio", FILM));
    change_path(write_file("broken.ocio", ROLE_OF_UNKNOWN_SPACE));
    EXPECT_THAT(take_log(), ElementsAre(OcioExceptionAt(1)));
    EXPECT_THAT(spaces(), ElementsAre("sRGB", "Cineon", "linear"));
    EXPECT_THAT(events.take(), ElementsAre(SCENE_LINEAR_EVENT, LUT_LIST_EVENT));
}

TEST_F(ManagerPathChange, TheEnvironmentStandsInForAMissingFile) {
    const std::string missing = path_of("missing.ocio");
    const std::string studio = write_file("studio.ocio", STUDIO);
    ocio_variable.set(studio);
    change_path(missing);
    EXPECT_THAT(take_log(), ElementsAre(LogLine{2, not_found(missing)}, LogLine{2, defaulting_to(studio)}));
    EXPECT_THAT(spaces(), ElementsAre("studio"));
    EXPECT_THAT(events.take(), ElementsAre(SCENE_LINEAR_EVENT, LUT_LIST_EVENT));
}

// The path is known good and equal, the file is gone, and no configuration of it is held any more.
TEST_F(ManagerPathChange, AKnownGoodPathWithoutFileOrConfigurationDoesNotBringTheManagerDown) {
    const std::string film = write_file("film.ocio", FILM);
    use_file(film);
    change_path("");
    std::remove(film.c_str());

    use_file(film);
    EXPECT_EQ(str(manager.get_color_space_name(99)), "");
    CoreString display, view;
    manager.get_default_display_view(display, view);
    manager.update_default_color_space_name();

    manager.use_file_config(false);
    EXPECT_TRUE(manager.is_using_tavelion_config());
    EXPECT_THAT(spaces(), ElementsAre("sRGB", "Cineon", "linear"));
}

// Edited look-up tables

// A LUT of two entries that multiplies by `top`.
static std::string lut_text(const std::string& top) {
    return "Version 1\nFrom 0.0 1.0\nLength 2\nComponents 1\n{\n        0.0\n        " + top + "\n}\n";
}

static float red_of(const ColorIOConverter& converter) {
    GMathVec4<float> pixel(1.0f, 1.0f, 1.0f, 1.0f);
    EXPECT_TRUE(converter.convert_pixel(pixel));
    return pixel[0];
}

TEST_F(ManagerPathChange, TakesAnEditedLutFileIntoAccountAndLeavesConvertersAsTheyAre) {
    const std::string config = write_file("config.ocio", R"(ocio_profile_version: 1
search_path: .
strictparsing: true
roles: {scene_linear: lin}
displays:
  Monitor:
    - !<View> {name: Film, colorspace: scaled}
colorspaces:
  - !<ColorSpace>
    name: lin
  - !<ColorSpace>
    name: scaled
    to_reference: !<FileTransform> {src: scale.spi1d, interpolation: linear}
)");
    write_file("scale.spi1d", lut_text("0.5"));
    change_path(config);
    ColorIOConverter before;
    ASSERT_TRUE(before.configure("scaled", "lin"));
    EXPECT_FLOAT_EQ(red_of(before), 0.5f);

    write_file("scale.spi1d", lut_text("0.25"));
    change_path(config);

    ColorIOConverter after;
    ASSERT_TRUE(after.configure("scaled", "lin"));
    EXPECT_FLOAT_EQ(red_of(after), 0.25f);
    EXPECT_FLOAT_EQ(red_of(before), 0.5f);
}
