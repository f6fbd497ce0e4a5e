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

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

namespace {

// The last line of a report on format mappings whose spaces are unknown.
const LogLine BAD_MAPPINGS = {
    2, "Please update the file format / color space mappings or set an OCIO configuration that defines the "
       "missing color spaces and restart Tavelion.\n"};

using ColorIOEvents = RunningModule;

} // namespace

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
