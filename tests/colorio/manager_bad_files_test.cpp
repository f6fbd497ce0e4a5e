#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include "tests/colorio/manager_sources_fixture.h"

using testing::ElementsAre;
using testing::IsEmpty;

using ManagerBadFile = ManagerSources;

TEST_F(ManagerBadFile, AMissingFileLeavesTheBuiltInConfigurationAndTellsNobody) {
    const std::string missing = path_of("missing.ocio");
    use_file(missing);
    EXPECT_THAT(take_log(), ElementsAre(LogLine{2, not_found(missing)}));
    EXPECT_TRUE(manager.is_using_tavelion_config());
    EXPECT_THAT(events.take(), IsEmpty());
}

TEST_F(ManagerBadFile, AFolderIsNoFile) {
    use_file(folder.get_path());
    EXPECT_THAT(take_log(), ElementsAre(LogLine{2, not_found(folder.get_path())}));
    EXPECT_TRUE(manager.is_using_tavelion_config());
}

TEST_F(ManagerBadFile, AMissingFileAfterAGoodOneFallsBackWithTheGoodOnesName) {
    const std::string film = write_file("film.ocio", FILM);
    const std::string missing = path_of("missing.ocio");
    use_file_and_forget(film);
    use_file(missing);
    EXPECT_THAT(take_log(), ElementsAre(LogLine{2, not_found(missing)}, LogLine{2, falling_back_from(film)}));
    EXPECT_TRUE(manager.is_using_tavelion_config());
}

TEST_F(ManagerBadFile, FallingBackLeavesListsAndEventsAlone) {
    use_file_and_forget(write_file("film.ocio", FILM));
    use_file(path_of("missing.ocio"));
    EXPECT_TRUE(manager.is_using_tavelion_config());
    EXPECT_THAT(spaces(), ElementsAre("film"));
    EXPECT_THAT(strings(manager.get_display_view_names()), ElementsAre("Monitor.Film"));
    EXPECT_EQ(str(manager.get_ROLE_SCENE_LINEAR()), "film");
    EXPECT_THAT(events.take(), IsEmpty());
}

TEST_F(ManagerBadFile, AFileIsCheckedAgainAfterAMissingOne) {
    const std::string film = write_file("film.ocio", FILM);
    use_file(film);
    use_file_and_forget(path_of("missing.ocio"));
    use_file(film);
    EXPECT_THAT(events.take(),
                ElementsAre(SCENE_LINEAR_EVENT, SCENE_LINEAR_EVENT, CDL_LIST_EVENT, LUT_LIST_EVENT));
    EXPECT_FALSE(manager.is_using_tavelion_config());
}

TEST_F(ManagerBadFile, AnEmptyPathIsNoMissingFile) {
    use_file("");
    EXPECT_THAT(take_log(), IsEmpty());
    EXPECT_TRUE(manager.is_using_tavelion_config());
    EXPECT_THAT(events.take(), IsEmpty());
}

TEST_F(ManagerBadFile, AnEmptyPathAfterAGoodFileFallsBackWithThatFilesName) {
    const std::string film = write_file("film.ocio", FILM);
    use_file_and_forget(film);
    use_file("");
    EXPECT_THAT(take_log(), ElementsAre(LogLine{2, falling_back_from(film)}));
    EXPECT_TRUE(manager.is_using_tavelion_config());
    EXPECT_THAT(events.take(), IsEmpty());
}

TEST_F(ManagerBadFile, AfterAnEmptyPathTheFileIsStillKnownGood) {
    const std::string film = write_file("film.ocio", FILM);
    use_file(film);
    use_file_and_forget("");
    use_file(film);
    EXPECT_THAT(events.take(), ElementsAre(SCENE_LINEAR_EVENT, CDL_LIST_EVENT, LUT_LIST_EVENT));
    EXPECT_THAT(spaces(), ElementsAre("film"));
}

TEST_F(ManagerBadFile, AConfigurationThatFailsTheCheckIsReportedAndNotUsed) {
    const std::string broken = write_file("broken.ocio", ROLE_OF_UNKNOWN_SPACE);
    use_file(broken);
    EXPECT_THAT(take_log(), ElementsAre(OcioExceptionAt(1), LogLine{2, falling_back_from(broken)}));
    EXPECT_TRUE(manager.is_using_tavelion_config());
    EXPECT_THAT(events.take(), IsEmpty());
}

TEST_F(ManagerBadFile, AConfigurationThatFailedTheCheckIsCheckedAgain) {
    const std::string path = write_file("config.ocio", ROLE_OF_UNKNOWN_SPACE);
    use_file_and_forget(path);
    write_file("config.ocio", FILM);
    manager.use_file_config(true);
    EXPECT_THAT(take_log(), IsEmpty());
    EXPECT_THAT(spaces(), ElementsAre("film"));
}

TEST_F(ManagerBadFile, ABrokenConfigurationAfterAGoodOneIsNotKnownGoodEither) {
    const std::string film = write_file("film.ocio", FILM);
    const std::string broken = write_file("broken.ocio", ROLE_OF_UNKNOWN_SPACE);
    use_file(film);
    use_file_and_forget(broken);
    use_file(broken);
    EXPECT_THAT(take_log(), ElementsAre(OcioExceptionAt(1), LogLine{2, falling_back_from(broken)}));
    EXPECT_TRUE(manager.is_using_tavelion_config());
}

// One warning for the check, then one for each role, whose look-up reads the file too.
TEST_F(ManagerBadFile, AFileThatIsNoConfigurationIsReportedByTheCheckAndByEachRole) {
    const std::string garbage = write_file("garbage.ocio", NO_CONFIGURATION);
    use_file(garbage);
    EXPECT_THAT(take_log(),
                ElementsAre(OcioExceptionAt(1), OcioExceptionAt(2), OcioExceptionAt(2), OcioExceptionAt(2),
                            OcioExceptionAt(2), OcioExceptionAt(2), OcioExceptionAt(2), OcioExceptionAt(2),
                            OcioExceptionAt(2), LogLine{2, falling_back_from(garbage)}));
    EXPECT_TRUE(manager.is_using_tavelion_config());
    EXPECT_THAT(events.take(), IsEmpty());
}

TEST_F(ManagerBadFile, AnEmptyFileIsNoConfiguration) {
    use_file(write_file("empty.ocio", ""));
    EXPECT_TRUE(manager.is_using_tavelion_config());
    EXPECT_THAT(events.take(), IsEmpty());
}

TEST_F(ManagerBadFile, ALogThatWantsErrorsOnlyIsHandedNoWarnings) {
    log.set_level(1);
    use_file(path_of("missing.ocio"));
    EXPECT_THAT(take_log(), IsEmpty());
    use_file(write_file("garbage.ocio", NO_CONFIGURATION));
    EXPECT_THAT(take_log(), ElementsAre(OcioExceptionAt(1)));
}

// The file was good when it was checked and is read again by the second switch, which checks nothing but
// the result.
TEST_F(ManagerBadFile, AConfigurationEditedIntoAnInvalidOneStaysActiveAndIsReportedTwice) {
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
