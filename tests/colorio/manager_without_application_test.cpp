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

using ManagerWithoutApplication = ManagerTest;

TEST_F(ManagerWithoutApplication, StartsAndPublishesPlaceholders) {
    ASSERT_TRUE(ColorIOManager::static_init(nullptr));
    const ColorIOManager& manager = *ColorIOManager::get_instance();
    EXPECT_THAT(strings(manager.get_color_space_names()), ElementsAre("linear"));
    EXPECT_THAT(strings(manager.get_display_view_names()), ElementsAre("default.linear"));
    EXPECT_THAT(strings(manager.get_CDL_names()), IsEmpty());
    EXPECT_EQ(manager.get_config(), nullptr);
    EXPECT_FALSE(manager.is_using_tavelion_config());
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(ManagerWithoutApplication, RaisesNothingAndSoNeedsNoFacade) {
    ASSERT_TRUE(ColorIOManager::static_init(nullptr));
    EXPECT_EQ(ColorIO::s_singleton, nullptr);

    EventRecorder events;
    ASSERT_TRUE(ColorIOManager::static_init(nullptr));
    EXPECT_THAT(events.take(), IsEmpty());
}

TEST_F(ManagerWithoutApplication, StartingAgainDoesNotRepeatThePlaceholders) {
    ASSERT_TRUE(ColorIOManager::static_init(nullptr));
    ASSERT_TRUE(ColorIOManager::static_init(nullptr));
    EXPECT_THAT(strings(ColorIOManager::get_instance()->get_color_space_names()), ElementsAre("linear"));
}

TEST_F(ManagerWithoutApplication, FindsNothingInEnumerationsThatDoNotExist) {
    ASSERT_TRUE(ColorIOManager::static_init(nullptr));
    const ColorIOManager& manager = *ColorIOManager::get_instance();
    CoreString display, view;
    EXPECT_FALSE(manager.color_space_exists("linear"));
    EXPECT_EQ(manager.get_color_space_index("linear"), NOT_FOUND);
    EXPECT_EQ(str(manager.get_color_space_name(0)), "");
    EXPECT_EQ(str(manager.get_full_color_space_name("linear")), "linear");
    EXPECT_EQ(str(manager.get_color_space_from_display_view("default.linear")), "default.linear");
    EXPECT_TRUE(manager.display_view_exists("default.linear"));
    EXPECT_FALSE(manager.get_display_view("default.linear", display, view));
    EXPECT_EQ(str(manager.get_default_display_view()), "");
    EXPECT_FALSE(manager.get_default_display_view(display, view));
    EXPECT_EQ(manager.get_CDL_index("No CDL"), NOT_FOUND);
    EXPECT_EQ(str(manager.get_CDL_name(0)), "");
}

TEST_F(ManagerWithoutApplication, IgnoresTheChangesOfAnApplication) {
    ASSERT_TRUE(ColorIOManager::static_init(nullptr));
    ColorIOManager& manager = *ColorIOManager::get_instance();
    ColorIOManager::s_default_color_space_name = "untouched";
    EventRecorder events;

    manager.use_file_config(true);
    manager.use_file_config(false);
    manager.update_file_config_path();
    manager.update_file_cdl_library_path();
    manager.update_default_color_space_name();

    EXPECT_THAT(events.take(), IsEmpty());
    EXPECT_THAT(take_log(), IsEmpty());
    EXPECT_EQ(manager.get_config(), nullptr);
    EXPECT_EQ(str(ColorIOManager::s_default_color_space_name), "untouched");
    EXPECT_THAT(strings(manager.get_color_space_names()), ElementsAre("linear"));
}

TEST_F(ManagerWithoutApplication, SettlesSceneLinearAndRolesWithoutAConfiguration) {
    ASSERT_TRUE(ColorIOManager::static_init(nullptr));
    ColorIOManager& manager = *ColorIOManager::get_instance();
    manager.set_default_color_space_name(true);
    EXPECT_EQ(str(manager.get_ROLE_SCENE_LINEAR()), "linear");
    manager.set_role_color_space(ColorIOManager::COLOR_PICKING);
    EXPECT_EQ(str(manager.get_role_color_space(ColorIOManager::COLOR_PICKING)), "linear");
}
