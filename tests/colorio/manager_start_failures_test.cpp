#include <memory>
#include <string>
#include <utility>

#include "colorio/color_io.h"
#include "colorio/color_io_constants.h"
#include "colorio/color_io_manager.h"
#include "host/of/of_enum.h"
#include "tests/colorio/manager_fixture.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const char LUT_FOLDER_FAILED[] =
    "Color Management: failed to create the temporary folder for the built-in LUT files.\n";
const char BUILTIN_FAILED[] =
    "Color Management: failed to create Tavelion built-in color space configuration.\n";
const char CDL_FOLDER_FAILED[] =
    "Color Management: failed to create the temporary folder for the built-in CDL files.\n";
const char BUILTIN_CDL_FAILED[] = "Color Management: failed to create Tavelion built-in CDL configuration.\n";

} // namespace

using ManagerStartFailures = ManagerTest;

TEST_F(ManagerStartFailures, WithoutATemporaryFolderBothConfigurationsFailTwiceAndLinearRemains) {
    app.answer_folder_request = [](unsigned int, CoreString&) { return false; };

    EXPECT_FALSE(ColorIOManager::static_init(&app));

    EXPECT_THAT(take_log(), ElementsAre(LogLine{1, LUT_FOLDER_FAILED}, LogLine{1, BUILTIN_FAILED},
                                        LogLine{1, CDL_FOLDER_FAILED}, LogLine{1, BUILTIN_CDL_FAILED},
                                        LogLine{1, LUT_FOLDER_FAILED}, LogLine{1, CDL_FOLDER_FAILED}));
    const ColorIOManager& manager = *ColorIOManager::get_instance();
    EXPECT_TRUE(manager.is_using_tavelion_config());
    EXPECT_THAT(strings(manager.get_color_space_names()), ElementsAre("linear"));
    EXPECT_THAT(strings(manager.get_display_view_names()), ElementsAre("Tavelion.linear"));
    EXPECT_THAT(strings(manager.get_CDL_names()), IsEmpty());
    EXPECT_EQ(str(manager.get_role_color_space(ColorIOManager::COLOR_PICKING)), "linear");
}

TEST_F(ManagerStartFailures, AStartThatFailsAfterAGoodOneLeavesNothingReady) {
    start_manager();
    app.answer_folder_request = [](unsigned int, CoreString&) { return false; };

    EXPECT_FALSE(ColorIOManager::static_init(&app));

    EXPECT_THAT(take_log(), ElementsAre(LogLine{1, LUT_FOLDER_FAILED}, LogLine{1, BUILTIN_FAILED},
                                        LogLine{1, CDL_FOLDER_FAILED}, LogLine{1, BUILTIN_CDL_FAILED},
                                        LogLine{1, LUT_FOLDER_FAILED}, LogLine{1, CDL_FOLDER_FAILED}));
    const ColorIOManager& manager = *ColorIOManager::get_instance();
    EXPECT_THAT(strings(manager.get_color_space_names()), ElementsAre("linear"));
    EXPECT_THAT(strings(manager.get_CDL_names()), IsEmpty());
    EXPECT_EQ(manager.get_tavelion_color_spaces().get_count(), 4u);
}

TEST_F(ManagerStartFailures, AFailedStartStillRaisesItsEvents) {
    app.answer_folder_request = [](unsigned int, CoreString&) { return false; };
    EventRecorder events;
    EXPECT_FALSE(ColorIOManager::static_init(&app));
    EXPECT_THAT(events.take(),
                ElementsAre(CDL_LIST_EVENT, SCENE_LINEAR_EVENT, CDL_LIST_EVENT, LUT_LIST_EVENT));
}

TEST_F(ManagerStartFailures, ABuiltInConfigurationThatFailedAtFirstIsMadeInTheSameStart) {
    app.answer_folder_request = [](unsigned int request, CoreString&) { return request != 1; };

    EXPECT_FALSE(ColorIOManager::static_init(&app));

    EXPECT_THAT(take_log(), ElementsAre(LogLine{1, LUT_FOLDER_FAILED}, LogLine{1, BUILTIN_FAILED}));
    const ColorIOManager& manager = *ColorIOManager::get_instance();
    EXPECT_THAT(strings(manager.get_color_space_names()), ElementsAre("sRGB", "Cineon", "linear"));
    EXPECT_EQ(manager.get_tavelion_color_spaces().get_count(), 3u);
    EXPECT_THAT(strings(manager.get_CDL_names()), ElementsAre("No CDL"));
}

TEST_F(ManagerStartFailures, ACDLConfigurationThatFailedAtFirstIsMadeInTheSameStart) {
    app.answer_folder_request = [](unsigned int request, CoreString&) { return request != 4; };

    EXPECT_FALSE(ColorIOManager::static_init(&app));

    EXPECT_THAT(take_log(), ElementsAre(LogLine{1, CDL_FOLDER_FAILED}, LogLine{1, BUILTIN_CDL_FAILED}));
    EXPECT_THAT(strings(ColorIOManager::get_instance()->get_CDL_names()), ElementsAre("No CDL"));
}

TEST_F(ManagerStartFailures, ALaterSwitchToTheBuiltInConfigurationTriesAgain) {
    app.answer_folder_request = [](unsigned int, CoreString&) { return false; };
    EXPECT_FALSE(ColorIOManager::static_init(&app));
    take_log();

    app.answer_folder_request = nullptr;
    ColorIOManager& manager = *ColorIOManager::get_instance();
    manager.use_file_config(false);

    EXPECT_THAT(take_log(), IsEmpty());
    EXPECT_THAT(strings(manager.get_color_space_names()), ElementsAre("sRGB", "Cineon", "linear"));
    EXPECT_THAT(strings(manager.get_CDL_names()), ElementsAre("No CDL"));
}

TEST_F(ManagerStartFailures, AQuietLogIsHandedNothing) {
    log.set_level(0);
    app.answer_folder_request = [](unsigned int, CoreString&) { return false; };
    EXPECT_FALSE(ColorIOManager::static_init(&app));
    EXPECT_THAT(take_log(), IsEmpty());
}
