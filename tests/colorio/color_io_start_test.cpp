#include "colorio/color_io.h"

#include <string>
#include <utility>
#include <vector>

#include "colorio/color_io_auto_detection.h"
#include "colorio/color_io_constants.h"
#include "colorio/color_io_manager.h"
#include "host/core/core_class_info.h"
#include "host/event/event_ids.h"
#include "standalone/standalone_app.h"
#include "tests/colorio/manager_sources_fixture.h"
#include "tests/colorio/running_module.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using ColorIOStart = ManagerTest;

} // namespace

TEST_F(ColorIOStart, NoPositionIsFoundBeforeOrAfter) {
    EXPECT_EQ(ColorIO::get_color_space_index("linear"), 0xFFFFFFFFu);
    ASSERT_TRUE(ColorIO::init(&app));
    EXPECT_EQ(ColorIO::get_color_space_index("linear"), 2u);
    ColorIO::destroy();
    EXPECT_EQ(ColorIO::get_color_space_index("linear"), 0xFFFFFFFFu);
}

TEST_F(ColorIOStart, BringsUpManagerFacadeAndDetector) {
    EXPECT_TRUE(ColorIO::init(&app));
    EXPECT_NE(ColorIOManager::get_instance(), nullptr);
    EXPECT_NE(ColorIOAutoDetection::get_instance(), nullptr);
    EXPECT_NE(ColorIO::s_singleton, nullptr);
    EXPECT_EQ(str(ColorIO::s_default_scene_linear), "Use scene_linear");
    EXPECT_EQ(str(ColorIO::s_default_color_picking), "Use Default");
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(ColorIOStart, ChecksNoMappingsAndSettlesNoDefaultNameYet) {
    app.default_color_space_name = "Cineon";
    EXPECT_TRUE(ColorIO::init(&app));
    EXPECT_EQ(str(ColorIO::get_default_color_space_name()), "linear");
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(ColorIOStart, WorksWithTheStandaloneApplication) {
    StandaloneApp standalone(folder.get_path().c_str());
    ASSERT_TRUE(ColorIO::init(&standalone));
    EXPECT_TRUE(ColorIO::color_space_exists("Tavelion|sRGB"));
    EXPECT_TRUE(folder.exists("qb_colorio/luts/srgb.spi1d"));

    standalone.set_color_space_file_path(write_file("film.ocio", FILM).c_str());
    EXPECT_TRUE(ColorIOManager::get_instance()->is_using_tavelion_config());
    standalone.set_use_color_space_file(true);
    EXPECT_THAT(strings(ColorIO::get_color_space_names()), ElementsAre("film"));
    standalone.set_use_color_space_file(false);
    EXPECT_THAT(strings(ColorIO::get_color_space_names()), ElementsAre("sRGB", "Cineon", "linear"));

    standalone.set_default_color_space_name("sRGB");
    EXPECT_EQ(str(ColorIO::get_default_color_space_name()), "sRGB");
    ColorIO::destroy();
}

TEST_F(ColorIOStart, WithoutApplicationNamesTheLabelsAndSucceeds) {
    EXPECT_TRUE(ColorIO::init(nullptr));
    EXPECT_NE(ColorIOManager::get_instance(), nullptr);
    EXPECT_NE(ColorIOAutoDetection::get_instance(), nullptr);
    EXPECT_EQ(str(ColorIO::s_default_scene_linear), "Use scene_linear");
    EXPECT_EQ(str(ColorIO::s_default_color_picking), "Use Default");
    EXPECT_THAT(strings(ColorIO::get_color_space_names()), ElementsAre("linear"));
    EXPECT_THAT(take_log(), IsEmpty());
}

// A check of the mappings would report every one of them, as no enumeration holds their spaces.
TEST_F(ColorIOStart, WithoutApplicationFollowsNoEvent) {
    ASSERT_TRUE(ColorIO::init(nullptr));
    ColorIO::get_instance()->raise_event(EVT_ID_COLORIO_MANAGER_LUT_LIST_CHANGED);
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(ColorIOStart, SucceedsWithTheDetectorAloneButFollowsNoManagerEvents) {
    app.answer_folder_request = [](unsigned int, CoreString&) { return false; };
    EXPECT_TRUE(ColorIO::init(&app));
    EXPECT_EQ(str(ColorIO::s_default_scene_linear), "");
    EXPECT_EQ(str(ColorIO::s_default_color_picking), "");
    EXPECT_NE(ColorIOAutoDetection::get_instance(), nullptr);
    take_log();

    EventRecorder events;
    app.default_color_space_name = "unknown";
    ColorIOManager::s_default_color_space_name = "untouched";
    app.cdl_library_file_path = path_of("library.ccc").c_str();
    for (const CoreString& event :
         {EVT_ID_APPLICATION_COLOR_SPACE_FILE_USE_CHANGED, EVT_ID_APPLICATION_COLOR_SPACE_FILE_PATH_CHANGED,
          EVT_ID_APPLICATION_CDL_FILE_PATH_CHANGED, EVT_ID_APPLICATION_COLOR_SPACE_NAME_CHANGED})
        app.raise_event(event);
    EXPECT_THAT(events.take(), IsEmpty());

    ColorIO::get_instance()->raise_event(EVT_ID_ROLE_SCENE_LINEAR_CHANGED);
    ColorIO::get_instance()->raise_event(EVT_ID_COLORIO_MANAGER_LUT_LIST_CHANGED);
    EXPECT_EQ(str(ColorIOManager::s_default_color_space_name), "untouched");
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(ColorIOStart, FollowsTheMappingFileEvenWhenTheManagerFailed) {
    app.answer_folder_request = [](unsigned int, CoreString&) { return false; };
    ASSERT_TRUE(ColorIO::init(&app));
    EventRecorder events;
    app.raise_event(EVT_ID_APPLICATION_COLOR_SPACE_BY_EXT_FILE_PATH_CHANGED);
    EXPECT_THAT(events.take(), ElementsAre(EXTENSION_EVENT));
}

TEST_F(ColorIOStart, AFailedStartThatIsRepeatedWithSuccessFollowsTheEvents) {
    app.answer_folder_request = [](unsigned int, CoreString&) { return false; };
    ASSERT_TRUE(ColorIO::init(&app));
    app.answer_folder_request = nullptr;
    ASSERT_TRUE(ColorIO::init(&app));
    EXPECT_EQ(str(ColorIO::s_default_color_picking), "Use Default");
    app.default_color_space_name = "Cineon";
    app.raise_event(EVT_ID_APPLICATION_COLOR_SPACE_NAME_CHANGED);
    EXPECT_EQ(str(ColorIO::get_default_color_space_name()), "Cineon");
}

TEST_F(ColorIOStart, RepeatedKeepsTheSingletonsAndFollowsEachEventTwice) {
    ASSERT_TRUE(ColorIO::init(&app));
    const ColorIOManager* manager = ColorIOManager::get_instance();
    const ColorIOAutoDetection* detector = ColorIOAutoDetection::get_instance();
    const ColorIO* facade = ColorIO::get_instance();

    ASSERT_TRUE(ColorIO::init(&app));

    EXPECT_EQ(ColorIOManager::get_instance(), manager);
    EXPECT_EQ(ColorIOAutoDetection::get_instance(), detector);
    EXPECT_EQ(ColorIO::get_instance(), facade);
    EventRecorder events;
    app.raise_event(EVT_ID_APPLICATION_COLOR_SPACE_FILE_USE_CHANGED);
    EXPECT_THAT(events.take(), ElementsAre(SCENE_LINEAR_EVENT, CDL_LIST_EVENT, LUT_LIST_EVENT,
                                           SCENE_LINEAR_EVENT, CDL_LIST_EVENT, LUT_LIST_EVENT));
}

TEST_F(ColorIOStart, DestroyingEndsTheManagerOnly) {
    ASSERT_TRUE(ColorIO::init(&app));
    const ColorIO* facade = ColorIO::get_instance();
    const ColorIOAutoDetection* detector = ColorIOAutoDetection::get_instance();
    ColorIO::destroy();
    EXPECT_EQ(ColorIOManager::get_instance(), nullptr);
    EXPECT_EQ(ColorIO::s_singleton, facade);
    EXPECT_EQ(ColorIOAutoDetection::get_instance(), detector);
    EXPECT_EQ(str(ColorIO::s_default_scene_linear), "Use scene_linear");
    ColorIO::destroy();
    EXPECT_EQ(ColorIOManager::get_instance(), nullptr);
}

TEST_F(ColorIOStart, HearsEventsInSilenceAfterBeingDestroyed) {
    ASSERT_TRUE(ColorIO::init(&app));
    ColorIO::destroy();
    EventRecorder events;
    app.default_color_space_name = "Cineon";
    app.cdl_library_file_path = write_file("library.ccc", "<ColorCorrectionCollection/>").c_str();
    want_file(write_file("film.ocio", FILM));
    for (const CoreString& event :
         {EVT_ID_APPLICATION_COLOR_SPACE_FILE_USE_CHANGED, EVT_ID_APPLICATION_COLOR_SPACE_FILE_PATH_CHANGED,
          EVT_ID_APPLICATION_CDL_FILE_PATH_CHANGED, EVT_ID_APPLICATION_COLOR_SPACE_NAME_CHANGED})
        app.raise_event(event);
    EXPECT_THAT(take_log(), IsEmpty());
    EXPECT_THAT(events.take(), IsEmpty());
    EXPECT_EQ(str(ColorIOManager::s_default_color_space_name), "linear");
}

TEST_F(ColorIOStart, WorksAgainAfterBeingDestroyed) {
    ASSERT_TRUE(ColorIO::init(&app));
    ColorIO::destroy();
    ASSERT_TRUE(ColorIO::init(&app));
    EXPECT_TRUE(ColorIO::color_space_exists("Tavelion|linear"));
}

// A program may keep its facade while one application ends and the next begins.
TEST_F(ColorIOStart, ANewApplicationFollowsOneThatEnded) {
    {
        ScriptedApp first(folder.get_path());
        ASSERT_TRUE(ColorIO::init(&first));
        ColorIO::destroy();
        ColorIOAutoDetection::destroy();
    }
    ASSERT_TRUE(ColorIO::init(&app));
    app.default_color_space_name = "Cineon";
    app.raise_event(EVT_ID_APPLICATION_COLOR_SPACE_NAME_CHANGED);
    EXPECT_EQ(str(ColorIO::get_default_color_space_name()), "Cineon");
}
