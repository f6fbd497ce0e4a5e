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
#include "tests/colorio/running_module.h"

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

namespace {

// Lacks the spaces of the built-in format mappings.
const std::string FILM =
    config_text({{"", "film"}}, {{"Monitor", "Film", "film"}}, {{"scene_linear", "film"}});

// The last line of a report on format mappings whose spaces are unknown.
const LogLine BAD_MAPPINGS = {
    2, "Please update the file format / color space mappings or set an OCIO configuration that defines the "
       "missing color spaces and restart Tavelion.\n"};

std::vector<std::string> tags(const ColorIO& facade) {
    std::vector<std::string> result;
    for (unsigned int i = 0; i < facade.get_color_space_tag_count(); ++i)
        result.push_back(str(facade.get_color_space_tag(i)));
    return result;
}

/// A facade that records its destruction.
struct MortalColorIO : ColorIO {
    MortalColorIO(const ColorIO& other, unsigned int& deaths) : ColorIO(other), deaths(deaths) {}
    ~MortalColorIO() override { ++deaths; }
    unsigned int& deaths;
};

using ColorIOFacade = ManagerTest;
using ColorIOStart = ManagerTest;
using ColorIOEvents = RunningModule;

} // namespace

// The instance and its class

TEST_F(ColorIOFacade, IsMadeOnFirstUseAndStaysTheSame) {
    EXPECT_EQ(ColorIO::s_singleton, nullptr);
    ColorIO* facade = ColorIO::get_instance();
    ASSERT_NE(facade, nullptr);
    EXPECT_EQ(ColorIO::get_instance(), facade);
    EXPECT_EQ(ColorIO::s_singleton, facade);
}

TEST_F(ColorIOFacade, KnowsThreeTagsOfColorSpaceAttributes) {
    EXPECT_THAT(tags(*ColorIO::get_instance()), ElementsAre("ColorSpace", "colorspace", "color_space"));
}

TEST_F(ColorIOFacade, IsRegisteredBelowTheHostsEventObject) {
    const CoreClassInfo* info = &ColorIO::class_info();
    std::vector<std::string> chain;
    for (; info != nullptr; info = info->get_base())
        chain.push_back(str(info->get_name()));
    EXPECT_THAT(chain,
                ElementsAre("ColorIO", "EventObject", "CoreCustomData", "CoreBaseObject", "CoreBaseType"));
    EXPECT_EQ(ColorIO::class_info().get_base(), &EventObject::class_info());
    EXPECT_EQ(ColorIO::class_info().get_destructor(), &ColorIO::___class_destructor__);
    EXPECT_EQ(ColorIO::class_info().get_user_data(), nullptr);
}

TEST_F(ColorIOFacade, IsRegisteredOnceUnderItsName) {
    EXPECT_EQ(&ColorIO::class_info(), &ColorIO::class_info());
    EXPECT_EQ(CoreClassInfo::find("ColorIO"), &ColorIO::class_info());
}

TEST_F(ColorIOFacade, TellsItsClassThroughItsBase) {
    const CoreBaseType& object = *ColorIO::get_instance();
    EXPECT_EQ(&object.get_class_info(), &ColorIO::class_info());
}

TEST_F(ColorIOFacade, ClassDestructorAcceptsNull) {
    EXPECT_TRUE(ColorIO::___class_destructor__(nullptr, false));
    EXPECT_TRUE(ColorIO::___class_destructor__(nullptr, true));
}

TEST_F(ColorIOFacade, ClassDestructorEndsASingleObject) {
    unsigned int deaths = 0;
    ColorIO* object = new MortalColorIO(*ColorIO::get_instance(), deaths);
    EXPECT_TRUE(ColorIO::___class_destructor__(object, false));
    EXPECT_EQ(deaths, 1u);
}

// That both objects are freed is what the leak check of the sanitizers looks at.
TEST_F(ColorIOFacade, ClassDestructorEndsAnArray) {
    const ColorIO& facade = *ColorIO::get_instance();
    auto* array = new ColorIO[2]{facade, facade};
    EXPECT_THAT(tags(array[1]), SizeIs(3));
    EXPECT_TRUE(ColorIO::___class_destructor__(array, true));
}

TEST_F(ColorIOFacade, CopiesCarryTheTags) {
    const ColorIO& facade = *ColorIO::get_instance();
    const ColorIO copy(facade);
    ColorIO assigned(copy);
    assigned = facade;
    EXPECT_THAT(tags(copy), ElementsAre("ColorSpace", "colorspace", "color_space"));
    EXPECT_THAT(tags(assigned), ElementsAre("ColorSpace", "colorspace", "color_space"));
    EXPECT_THAT(tags(facade), SizeIs(3));
    EXPECT_NE(&copy.get_color_space_tag(0), &facade.get_color_space_tag(0));
}

TEST_F(ColorIOFacade, MovesCarryTheTagsAndAssigningReleasesThemInTheSource) {
    ColorIO source(*ColorIO::get_instance());
    ColorIO constructed(std::move(source));
    EXPECT_THAT(tags(constructed), ElementsAre("ColorSpace", "colorspace", "color_space"));

    ColorIO assigned(*ColorIO::get_instance());
    assigned = std::move(constructed);
    EXPECT_THAT(tags(assigned), ElementsAre("ColorSpace", "colorspace", "color_space"));
    EXPECT_EQ(constructed.get_color_space_tag_count(), 0u);
}

TEST_F(ColorIOFacade, AnAssignmentToItselfKeepsTheTags) {
    ColorIO copy(*ColorIO::get_instance());
    const ColorIO& same = copy;
    copy = same;
    EXPECT_THAT(tags(copy), ElementsAre("ColorSpace", "colorspace", "color_space"));
}

TEST_F(ColorIOFacade, ACopyRaisesItsEventsToNobody) {
    ASSERT_TRUE(ColorIO::init(&app));
    EventRecorder events;
    ColorIO copy(*ColorIO::get_instance());
    app.default_color_space_name = "Cineon";
    copy.raise_event(EVT_ID_ROLE_SCENE_LINEAR_CHANGED);
    EXPECT_THAT(events.take(), IsEmpty());
    EXPECT_EQ(str(ColorIO::get_default_color_space_name()), "linear");
}

// Start-up and shut-down

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

// Events

TEST_F(ColorIOEvents, TheSwitchOfTheFileIsFollowed) {
    app.color_space_file_path = write_file("film.ocio", FILM).c_str();
    app.use_color_space_file = true;
    app.raise_event(EVT_ID_APPLICATION_COLOR_SPACE_FILE_USE_CHANGED);
    EXPECT_THAT(strings(ColorIO::get_color_space_names()), ElementsAre("film"));
    EXPECT_THAT(take_events(),
                ElementsAre(SCENE_LINEAR_EVENT, SCENE_LINEAR_EVENT, CDL_LIST_EVENT, LUT_LIST_EVENT));

    app.use_color_space_file = false;
    app.raise_event(EVT_ID_APPLICATION_COLOR_SPACE_FILE_USE_CHANGED);
    EXPECT_THAT(strings(ColorIO::get_color_space_names()), ElementsAre("sRGB", "Cineon", "linear"));
    EXPECT_THAT(take_events(), ElementsAre(SCENE_LINEAR_EVENT, CDL_LIST_EVENT, LUT_LIST_EVENT));
}

TEST_F(ColorIOEvents, TheSwitchIsReadFromTheApplicationThatSentTheEvent) {
    ScriptedApp sender(folder.get_path());
    sender.use_color_space_file = true;
    app.color_space_file_path = write_file("film.ocio", FILM).c_str();
    const EventObject::EventInfo info{EVT_ID_APPLICATION_COLOR_SPACE_FILE_USE_CHANGED, nullptr};
    ColorIO::get_instance()->on_use_ocio_config_file_changed(sender, info, nullptr);
    EXPECT_THAT(strings(ColorIO::get_color_space_names()), ElementsAre("film"));
}

TEST_F(ColorIOEvents, TheChangeOfThePathIsFollowed) {
    want_file(write_file("film.ocio", FILM));
    app.raise_event(EVT_ID_APPLICATION_COLOR_SPACE_FILE_PATH_CHANGED);
    EXPECT_THAT(strings(ColorIO::get_color_space_names()), ElementsAre("film"));
    EXPECT_THAT(take_events(), ElementsAre(SCENE_LINEAR_EVENT, LUT_LIST_EVENT));
}

TEST_F(ColorIOEvents, TheChangeOfTheCDLLibraryIsFollowed) {
    app.cdl_library_file_path = write_file("library.ccc", R"(<?xml version="1.0"?>
<ColorCorrectionCollection xmlns="urn:ASC:CDL:v1.2">
  <ColorCorrection id="warm">
    <SOPNode>
      <Slope>2 1 1</Slope><Offset>0 0 0</Offset><Power>1 1 1</Power>
    </SOPNode>
    <SATNode><Saturation>1</Saturation></SATNode>
  </ColorCorrection>
</ColorCorrectionCollection>
)")
                                    .c_str();
    app.raise_event(EVT_ID_APPLICATION_CDL_FILE_PATH_CHANGED);
    EXPECT_EQ(ColorIO::get_CDL_index("warm"), 1u);
    EXPECT_THAT(take_events(), ElementsAre(CDL_LIST_EVENT));
}

TEST_F(ColorIOEvents, TheChangeOfTheDefaultNameIsFollowed) {
    app.default_color_space_name = "Cineon";
    app.raise_event(EVT_ID_APPLICATION_COLOR_SPACE_NAME_CHANGED);
    EXPECT_EQ(str(ColorIO::get_default_color_space_name()), "Cineon");
    EXPECT_THAT(take_events(), IsEmpty());
}

TEST_F(ColorIOEvents, AChangeOfSceneLinearSettlesTheDefaultNameToo) {
    app.default_color_space_name = "Cineon";
    ColorIO::get_instance()->raise_event(EVT_ID_ROLE_SCENE_LINEAR_CHANGED);
    EXPECT_EQ(str(ColorIO::get_default_color_space_name()), "Cineon");
}

// Scene-linear is settled before the new configuration becomes active.
TEST_F(ColorIOEvents, DuringASwitchTheDefaultNameIsJudgedByTheConfigurationThatLeaves) {
    app.default_color_space_name = "Cineon";
    want_file(write_file("film.ocio", FILM));
    app.raise_event(EVT_ID_APPLICATION_COLOR_SPACE_FILE_USE_CHANGED);
    EXPECT_EQ(str(ColorIO::get_default_color_space_name()), "Cineon");
    EXPECT_EQ(str(ColorIO::get_role_color_space(ColorIOManager::DATA)), "Cineon");

    app.raise_event(EVT_ID_APPLICATION_COLOR_SPACE_FILE_USE_CHANGED);
    EXPECT_EQ(str(ColorIO::get_default_color_space_name()), "film");
    EXPECT_EQ(str(ColorIO::get_role_color_space(ColorIOManager::DATA)), "film");
}

TEST_F(ColorIOEvents, AChangeOfTheColorSpacesChecksTheFormatMappings) {
    ColorIO::get_instance()->raise_event(EVT_ID_COLORIO_MANAGER_LUT_LIST_CHANGED);
    EXPECT_THAT(take_log(), IsEmpty());

    want_file(write_file("film.ocio", FILM));
    app.raise_event(EVT_ID_APPLICATION_COLOR_SPACE_FILE_PATH_CHANGED);
    EXPECT_THAT(take_log(), Contains(BAD_MAPPINGS).Times(1));
}

TEST_F(ColorIOEvents, AFallBackThatPublishesNothingChecksNoMappings) {
    want_file(path_of("missing.ocio"));
    app.raise_event(EVT_ID_APPLICATION_COLOR_SPACE_FILE_USE_CHANGED);
    EXPECT_THAT(take_log(), Not(Contains(BAD_MAPPINGS)));
    EXPECT_THAT(take_events(), IsEmpty());
}

TEST_F(ColorIOEvents, WithoutDetectorAChangeOfTheColorSpacesChecksNothing) {
    ColorIOAutoDetection::destroy();
    want_file(write_file("film.ocio", FILM));
    app.raise_event(EVT_ID_APPLICATION_COLOR_SPACE_FILE_PATH_CHANGED);
    EXPECT_THAT(take_log(), IsEmpty());
    EXPECT_THAT(take_events(), Contains(LUT_LIST_EVENT));
}

TEST_F(ColorIOEvents, TheChangeOfTheMappingFileIsFollowedForEverySwitchButZero) {
    app.color_space_by_extension_file_path =
        write_file("mapping.yaml", "Film:\n  extensions: dpx\n  color_space: Tavelion|Cineon\n").c_str();
    for (const auto& [flag, from_file] :
         {std::pair{2u, true}, {0u, false}, {1u, true}, {0x80000000u, true}}) {
        app.use_color_space_by_extension_file = flag;
        app.raise_event(EVT_ID_APPLICATION_COLOR_SPACE_BY_EXT_FILE_PATH_CHANGED);
        EXPECT_EQ(ColorIOAutoDetection::get_instance()->is_file_config(), from_file) << flag;
        EXPECT_THAT(take_events(), ElementsAre(EXTENSION_EVENT)) << flag;
    }
}

TEST_F(ColorIOEvents, OtherEventsOfTheApplicationAreNotFollowed) {
    app.default_color_space_name = "Cineon";
    want_file(write_file("film.ocio", FILM));
    for (const CoreString& event :
         {EVT_ID_APPLICATION_IDLE, EVT_ID_ROLE_SCENE_LINEAR_CHANGED, EVT_ID_COLORIO_MANAGER_LUT_LIST_CHANGED,
          EVT_ID_APPLICATION_AOV_FILE_PATH_CHANGED})
        app.raise_event(event);
    EXPECT_EQ(str(ColorIO::get_default_color_space_name()), "linear");
    EXPECT_THAT(strings(ColorIO::get_color_space_names()), ElementsAre("sRGB", "Cineon", "linear"));
    EXPECT_THAT(take_events(), IsEmpty());
}
