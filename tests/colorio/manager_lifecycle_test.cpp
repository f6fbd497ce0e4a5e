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

using ManagerLifecycle = ManagerTest;

TEST_F(ManagerLifecycle, ThereIsNoManagerBeforeItIsStarted) {
    EXPECT_EQ(ColorIOManager::get_instance(), nullptr);
}

TEST_F(ManagerLifecycle, ANewManagerHoldsNothing) {
    const ColorIOManager manager(&app);
    EXPECT_EQ(manager.get_config(), nullptr);
    EXPECT_EQ(manager.get_cdl_config(), nullptr);
    EXPECT_FALSE(manager.is_using_tavelion_config());
    EXPECT_TRUE(manager.get_tavelion_color_spaces().is_empty());
    EXPECT_TRUE(manager.get_tavelion_color_decision_lists().is_empty());
    EXPECT_TRUE(manager.get_color_space_names().is_empty());
    EXPECT_TRUE(manager.get_display_view_names().is_empty());
    EXPECT_TRUE(manager.get_CDL_names().is_empty());
    EXPECT_EQ(str(manager.get_ROLE_SCENE_LINEAR()), "");
    EXPECT_EQ(app.get_enum("color_space"), nullptr);
}

TEST_F(ManagerLifecycle, ANewManagersRolesStartAtTheModulesDefaultName) {
    ColorIOManager::s_default_color_space_name = "kept from before";
    const ColorIOManager manager(&app);
    for (int role = 0; role < 8; ++role)
        EXPECT_EQ(str(manager.get_role_color_space(role)), "kept from before") << role;
    EXPECT_EQ(str(manager.get_default_color_picking_space_name()), "kept from before");
}

TEST_F(ManagerLifecycle, ANewManagerAnswersQueriesWithNotFound) {
    const ColorIOManager manager(&app);
    CoreString display, view;
    EXPECT_FALSE(manager.color_space_exists("linear"));
    EXPECT_FALSE(manager.display_view_exists("default.linear"));
    EXPECT_EQ(manager.get_color_space_index("linear"), NOT_FOUND);
    EXPECT_EQ(str(manager.get_color_space_name(0)), "");
    EXPECT_EQ(str(manager.get_full_color_space_name("linear")), "linear");
    EXPECT_EQ(str(manager.get_color_space_from_display_view("a.b")), "a.b");
    EXPECT_FALSE(manager.get_display_view("a.b", display, view));
    EXPECT_EQ(str(manager.get_default_display_view()), "");
    EXPECT_FALSE(manager.get_default_display_view(display, view));
}

TEST_F(ManagerLifecycle, StartingMakesTheOneInstance) {
    EXPECT_TRUE(ColorIOManager::static_init(&app));
    EXPECT_NE(ColorIOManager::get_instance(), nullptr);
    EXPECT_EQ(ColorIOManager::get_instance(), ColorIOManager::s_instance);
}

TEST_F(ManagerLifecycle, StartingLogsNothingWhenAllIsWell) {
    log.set_level(3);
    const ColorIOManager& manager = start_manager();
    EXPECT_TRUE(manager.is_using_tavelion_config());
    for (const LogLine& line : take_log())
        EXPECT_EQ(line.level, 3u) << line;
}

TEST_F(ManagerLifecycle, StartingMakesTheBuiltInConfigurationActiveWhateverIsWanted) {
    want_file(write_file("film.ocio", config_text({{"", "lin"}}, {{"Monitor", "Film", "lin"}})));
    const ColorIOManager& manager = start_manager();
    EXPECT_TRUE(manager.is_using_tavelion_config());
    EXPECT_THAT(strings(manager.get_color_space_names()), ElementsAre("sRGB", "Cineon", "linear"));
}

TEST_F(ManagerLifecycle, StartingPublishesTheBuiltInSpacesViewsAndCDL) {
    const ColorIOManager& manager = start_manager();
    EXPECT_THAT(strings(manager.get_color_space_names()), ElementsAre("sRGB", "Cineon", "linear"));
    EXPECT_THAT(strings(manager.get_display_view_names()),
                ElementsAre("Tavelion.sRGB", "Tavelion.Cineon", "Tavelion.linear"));
    EXPECT_THAT(strings(manager.get_CDL_names()), ElementsAre("No CDL"));
    EXPECT_EQ(str(manager.get_ROLE_SCENE_LINEAR()), "linear");
}

TEST_F(ManagerLifecycle, StartingMakesSixEnumerationsThatAnswerNotFoundForUnknownLabels) {
    start_manager();
    for (const char* name : {"color_space", "internal_color_space", "color_picking", "view_transform",
                             "color_decision_list", "roles_enum"}) {
        const OfEnum* list = app.get_enum(name);
        ASSERT_NE(list, nullptr) << name;
        EXPECT_EQ(list->get_invalid_value(), 0xFFFFFFFFu) << name;
        EXPECT_EQ(list->get_value("no such label"), 0xFFFFFFFFu) << name;
        EXPECT_FALSE(list->is_asleep()) << name;
    }
}

TEST_F(ManagerLifecycle, TheThreeColorSpaceMenusSplitAtTheFamilySeparator) {
    start_manager();
    EXPECT_EQ(str(app.get_enum("color_space")->get_separator()), "|");
    EXPECT_EQ(str(app.get_enum("internal_color_space")->get_separator()), "|");
    EXPECT_EQ(str(app.get_enum("color_picking")->get_separator()), "|");
    EXPECT_EQ(str(app.get_enum("view_transform")->get_separator()), "");
    EXPECT_EQ(str(app.get_enum("color_decision_list")->get_separator()), "");
    EXPECT_EQ(str(app.get_enum("roles_enum")->get_separator()), "");
}

TEST_F(ManagerLifecycle, TheRoleMenuListsTheEightRolesInOrder) {
    start_manager();
    EXPECT_THAT(labels(app.get_enum("roles_enum")),
                ElementsAre("color_picking", "color_timing", "compositing_log", "data", "default",
                            "matte_paint", "reference", "texture_paint"));
    EXPECT_THAT(values(app.get_enum("roles_enum")), ElementsAre(0, 1, 2, 3, 4, 5, 6, 7));
}

TEST_F(ManagerLifecycle, StartingRaisesTheCDLListTwiceTheSceneLinearOnceAndTheColorSpaceListLast) {
    EventRecorder events;
    start_manager();
    EXPECT_THAT(events.take(),
                ElementsAre(CDL_LIST_EVENT, SCENE_LINEAR_EVENT, CDL_LIST_EVENT, LUT_LIST_EVENT));
}

TEST_F(ManagerLifecycle, StartingMakesTheFacadeToRaiseEventsOn) {
    ASSERT_EQ(ColorIO::s_singleton, nullptr);
    start_manager();
    EXPECT_NE(ColorIO::s_singleton, nullptr);
}

TEST_F(ManagerLifecycle, StartingAsksForTheLutFolderOncePerUse) {
    start_manager();
    EXPECT_THAT(app.requested_folders, ElementsAre("luts", "luts", "luts", "luts"));
}

TEST_F(ManagerLifecycle, StartingAgainKeepsTheInstanceAndMakesItsMenusAgain) {
    const ColorIOManager* first = &start_manager();
    OfEnum* old_spaces = app.get_enum("color_space");

    EXPECT_EQ(&start_manager(), first);

    OfEnum* new_spaces = app.get_enum("color_space");
    EXPECT_NE(new_spaces, old_spaces);
    EXPECT_THAT(labels(new_spaces), ElementsAre("Tavelion|sRGB", "Tavelion|Cineon", "Tavelion|linear"));
    EXPECT_EQ(app.get_enum("roles_enum")->get_value_count(), 8u);
    EXPECT_EQ(first->get_color_space_index("linear"), 2u);
    EXPECT_TRUE(first->is_using_tavelion_config());
}

TEST_F(ManagerLifecycle, StartingAgainAppendsTheBuiltInRecordsAgain) {
    start_manager();
    const ColorIOManager& manager = start_manager();
    std::vector<std::string> names;
    for (const ColorIOManager::ColorSpaceDef& def : manager.get_tavelion_color_spaces())
        names.push_back(str(def.name));
    EXPECT_THAT(names, ElementsAre("sRGB", "Cineon", "linear", "sRGB", "Cineon", "linear"));
    EXPECT_EQ(manager.get_tavelion_color_decision_lists().get_count(), 1u);
    EXPECT_THAT(strings(manager.get_color_space_names()), ElementsAre("sRGB", "Cineon", "linear"));
}

TEST_F(ManagerLifecycle, StartingAgainReplacesTheBuiltInConfigurationAndLeavesTheOldOneToItsHolders) {
    ColorIOManager& manager = start_manager();
    const auto old_config = manager.get_config();
    start_manager();
    EXPECT_NE(manager.get_config(), old_config);
    EXPECT_EQ(old_config.use_count(), 1);
}

TEST_F(ManagerLifecycle, StartingAgainWithAnotherApplicationStaysWithTheFirst) {
    ScriptedApp other(path_of("elsewhere"));
    start_manager();
    EXPECT_TRUE(ColorIOManager::static_init(&other));
    EXPECT_EQ(other.get_enum("color_space"), nullptr);
    EXPECT_THAT(other.requested_folders, IsEmpty());
}

TEST_F(ManagerLifecycle, DestroyingLeavesTheMenusWithTheApplication) {
    start_manager();
    ColorIOManager::destroy();
    EXPECT_EQ(ColorIOManager::get_instance(), nullptr);
    EXPECT_THAT(labels(app.get_enum("color_space")),
                ElementsAre("Tavelion|sRGB", "Tavelion|Cineon", "Tavelion|linear"));
}

TEST_F(ManagerLifecycle, DestroyingReleasesTheConfigurationExceptForItsHolders) {
    const auto held = start_manager().get_config();
    const auto cdl_config = ColorIOManager::get_instance()->get_cdl_config();
    ColorIOManager::destroy();
    EXPECT_EQ(held.use_count(), 1);
    EXPECT_EQ(cdl_config.use_count(), 1);
}

TEST_F(ManagerLifecycle, DestroyingWithoutAManagerDoesNothing) {
    ColorIOManager::destroy();
    EXPECT_EQ(ColorIOManager::get_instance(), nullptr);
}

TEST_F(ManagerLifecycle, AManagerCanBeStartedAfterAnotherWasDestroyed) {
    start_manager();
    ColorIOManager::destroy();
    const ColorIOManager& manager = start_manager();
    EXPECT_EQ(manager.get_tavelion_color_spaces().get_count(), 3u);
    EXPECT_EQ(manager.get_color_space_index("Tavelion|sRGB"), 0u);
}

// What `s_default_color_space_name` was set to is the module's, not the manager's.
TEST_F(ManagerLifecycle, TheDefaultColorSpaceNameOutlivesTheManager) {
    app.default_color_space_name = "Cineon";
    start_manager().update_default_color_space_name();
    ColorIOManager::destroy();
    EXPECT_EQ(str(ColorIOManager::s_default_color_space_name), "Cineon");
    EXPECT_EQ(str(start_manager().get_role_color_space(ColorIOManager::DATA)), "Cineon");
}

TEST_F(ManagerLifecycle, ACopySharesTheConfigurationAndKeepsItsOwnLists) {
    const ColorIOManager& manager = start_manager();
    const ColorIOManager copy(manager);
    ColorIOManager assigned(nullptr);
    assigned = manager;
    for (const ColorIOManager* same : {&copy, const_cast<const ColorIOManager*>(&assigned)}) {
        EXPECT_EQ(same->get_config(), manager.get_config());
        EXPECT_TRUE(same->is_using_tavelion_config());
        EXPECT_THAT(strings(same->get_color_space_names()), ElementsAre("sRGB", "Cineon", "linear"));
        EXPECT_NE(&same->get_color_space_names(), &manager.get_color_space_names());
        EXPECT_EQ(same->get_color_space_index("linear"), 2u);
        EXPECT_EQ(same->get_tavelion_color_spaces().get_count(), 3u);
        EXPECT_EQ(str(same->get_role_color_space(ColorIOManager::COLOR_PICKING)), "sRGB");
        EXPECT_EQ(str(same->get_ROLE_SCENE_LINEAR()), "linear");
    }
}

TEST_F(ManagerLifecycle, AMovedManagerTakesTheConfigurationAlong) {
    ColorIOManager source(start_manager());
    const auto config = source.get_config();

    ColorIOManager constructed(std::move(source));
    EXPECT_EQ(constructed.get_config(), config);
    EXPECT_TRUE(constructed.is_using_tavelion_config());
    EXPECT_EQ(constructed.get_color_space_index("Cineon"), 1u);

    ColorIOManager assigned(nullptr);
    assigned = std::move(constructed);
    EXPECT_EQ(assigned.get_config(), config);
    EXPECT_TRUE(assigned.is_using_tavelion_config());
    EXPECT_THAT(strings(assigned.get_display_view_names()),
                ElementsAre("Tavelion.sRGB", "Tavelion.Cineon", "Tavelion.linear"));
    EXPECT_EQ(str(assigned.get_role_color_space(ColorIOManager::COLOR_PICKING)), "sRGB");
}
