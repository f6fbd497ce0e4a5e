#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include "tests/colorio/manager_sources_fixture.h"

using testing::ElementsAre;
using testing::IsEmpty;

using ManagerUseEnvironment = ManagerSources;

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
