// Which events each operation raises, in order.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "colorio/color_io.h"
#include "colorio/color_io_auto_detection.h"
#include "colorio/color_io_manager.h"
#include "host/event/event_ids.h"
#include "host/of/of_enum.h"
#include "host/parser/parser_entry.h"
#include "host/parser/parser_file.h"
#include "tests/colorio/converter_fixture.h"
#include "tests/colorio/custom_space_files.h"
#include "tests/colorio/running_module.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class RaisedEvents : public RunningModule {
protected:
    ColorIOManager& manager() { return *ColorIOManager::get_instance(); }
    ColorIOAutoDetection& detection() { return *ColorIOAutoDetection::get_instance(); }
    std::string write_config(const char* name) { return write_file(name, CONFIG_WITHOUT_FAMILIES); }
    void tell(const CoreString& event) { app.raise_event(event); }
};

TEST_F(RaisedEvents, OfAStart) {
    forget_facade();
    ColorIO::destroy();
    EventRecorder recorder;
    ASSERT_TRUE(ColorIO::init(&app));
    EXPECT_THAT(recorder.take(),
                ElementsAre(CDL_LIST_EVENT, SCENE_LINEAR_EVENT, CDL_LIST_EVENT, LUT_LIST_EVENT));
    ASSERT_TRUE(ColorIO::init(&app));
    EXPECT_THAT(recorder.take(),
                ElementsAre(CDL_LIST_EVENT, SCENE_LINEAR_EVENT, CDL_LIST_EVENT, LUT_LIST_EVENT))
        << "a second start does the same";
}

TEST_F(RaisedEvents, OfAStartWithoutAnApplicationAreNone) {
    forget_facade();
    ColorIO::destroy();
    EventRecorder recorder;
    ASSERT_TRUE(ColorIO::init(nullptr));
    EXPECT_THAT(recorder.take(), IsEmpty());
}

TEST_F(RaisedEvents, OfTheSwitchToAFile) {
    want_file(write_config("config.ocio"));
    tell(EVT_ID_APPLICATION_COLOR_SPACE_FILE_USE_CHANGED);
    EXPECT_THAT(take_events(),
                ElementsAre(SCENE_LINEAR_EVENT, SCENE_LINEAR_EVENT, CDL_LIST_EVENT, LUT_LIST_EVENT))
        << "the scene-linear space is settled while loading and after";
    tell(EVT_ID_APPLICATION_COLOR_SPACE_FILE_USE_CHANGED);
    EXPECT_THAT(take_events(), ElementsAre(SCENE_LINEAR_EVENT, CDL_LIST_EVENT, LUT_LIST_EVENT))
        << "the file is not loaded again";
    app.use_color_space_file = false;
    tell(EVT_ID_APPLICATION_COLOR_SPACE_FILE_USE_CHANGED);
    EXPECT_THAT(take_events(), ElementsAre(SCENE_LINEAR_EVENT, CDL_LIST_EVENT, LUT_LIST_EVENT));
}

TEST_F(RaisedEvents, OfTheSwitchToAFileThatCannotBeUsedAreNone) {
    want_file(path_of("absent.ocio"));
    tell(EVT_ID_APPLICATION_COLOR_SPACE_FILE_USE_CHANGED);
    want_file(write_file("damaged.ocio", "no configuration"));
    tell(EVT_ID_APPLICATION_COLOR_SPACE_FILE_USE_CHANGED);
    EXPECT_THAT(take_events(), IsEmpty());
}

TEST_F(RaisedEvents, OfAChangeOfPath) {
    want_file(write_config("config.ocio"));
    tell(EVT_ID_APPLICATION_COLOR_SPACE_FILE_PATH_CHANGED);
    EXPECT_THAT(take_events(), ElementsAre(SCENE_LINEAR_EVENT, LUT_LIST_EVENT));
    want_file(path_of("absent.ocio"));
    tell(EVT_ID_APPLICATION_COLOR_SPACE_FILE_PATH_CHANGED);
    EXPECT_THAT(take_events(), ElementsAre(SCENE_LINEAR_EVENT, LUT_LIST_EVENT));
    app.use_color_space_file = false;
    tell(EVT_ID_APPLICATION_COLOR_SPACE_FILE_PATH_CHANGED);
    EXPECT_THAT(take_events(), ElementsAre(SCENE_LINEAR_EVENT));
}

TEST_F(RaisedEvents, OfAChangeOfTheDefaultColorSpaceAreNone) {
    app.default_color_space_name = "sRGB";
    tell(EVT_ID_APPLICATION_COLOR_SPACE_NAME_CHANGED);
    EXPECT_EQ(str(ColorIO::get_default_color_space_name()), "sRGB");
    EXPECT_THAT(take_events(), IsEmpty());
}

TEST_F(RaisedEvents, OfAChangeOfTheCdlLibrary) {
    app.cdl_library_file_path =
        write_file("library.ccc", collection_text(correction_text("warm", "2"))).c_str();
    tell(EVT_ID_APPLICATION_CDL_FILE_PATH_CHANGED);
    EXPECT_THAT(take_events(), ElementsAre(CDL_LIST_EVENT));
    app.cdl_library_file_path = "";
    tell(EVT_ID_APPLICATION_CDL_FILE_PATH_CHANGED);
    EXPECT_THAT(take_events(), IsEmpty());
}

TEST_F(RaisedEvents, OfAChangeOfTheMappingFile) {
    app.color_space_by_extension_file_path = write_file("mapping.yaml", "{}\n").c_str();
    app.use_color_space_by_extension_file = 1;
    tell(EVT_ID_APPLICATION_COLOR_SPACE_BY_EXT_FILE_PATH_CHANGED);
    EXPECT_THAT(take_events(), ElementsAre(EXTENSION_EVENT));
    app.use_color_space_by_extension_file = 0;
    tell(EVT_ID_APPLICATION_COLOR_SPACE_BY_EXT_FILE_PATH_CHANGED);
    EXPECT_THAT(take_events(), ElementsAre(EXTENSION_EVENT));
    app.use_color_space_by_extension_file = 1;
    app.color_space_by_extension_file_path = path_of("absent.yaml").c_str();
    tell(EVT_ID_APPLICATION_COLOR_SPACE_BY_EXT_FILE_PATH_CHANGED);
    EXPECT_THAT(take_events(), IsEmpty());
}

TEST_F(RaisedEvents, OfEdits) {
    manager().set_tavelion_config(
        CoreVector<ColorIOManager::ColorSpaceDef>(manager().get_tavelion_color_spaces()));
    EXPECT_THAT(take_events(), ElementsAre(SCENE_LINEAR_EVENT, LUT_LIST_EVENT));
    manager().set_tavelion_config(
        CoreVector<ColorIOManager::ColorDecisionListDef>(manager().get_tavelion_color_decision_lists()));
    EXPECT_THAT(take_events(), ElementsAre(CDL_LIST_EVENT));
    manager().add_local_CDL(cdl_record("input_local_CDL", {}));
    detection().add_file_format("Dpx", "dpx", "Tavelion|Cineon");
    detection().set_default_color_space_from_file_format(0, "sRGB");
    EXPECT_THAT(take_events(), IsEmpty());
}

TEST_F(RaisedEvents, OfPreferences) {
    EXPECT_TRUE(ColorIO::load_config(nullptr));
    EXPECT_THAT(take_events(), ElementsAre(LUT_LIST_EVENT, CDL_LIST_EVENT));
    want_file(write_config("config.ocio"));
    EXPECT_TRUE(ColorIO::load_config(nullptr));
    EXPECT_THAT(take_events(), ElementsAre(SCENE_LINEAR_EVENT, LUT_LIST_EVENT, CDL_LIST_EVENT));
    ParserEntry entry("color management");
    EXPECT_TRUE(ColorIO::save_config(&entry));
    EXPECT_THAT(take_events(), IsEmpty());
}

TEST_F(RaisedEvents, ArriveWhenTheNewListsAreInPlace) {
    EventRecorder recorder;
    unsigned int checked = 0;
    recorder.on_event = [&](const std::string& event) {
        if (event != LUT_LIST_EVENT)
            return;
        ++checked;
        EXPECT_FALSE(app.get_enum("color_space")->is_asleep());
        EXPECT_THAT(strings(ColorIO::get_color_space_names()), ElementsAre("lin", "film", "video", "data"));
        EXPECT_EQ(labels(app.get_enum("color_space")), strings(ColorIO::get_color_space_names()));
        std::vector<float> pixel = {1, 0.5f, 0.25f};
        EXPECT_TRUE(ColorIO::convert_buffer(pixel.data(), 1, 1, 3, "film", "lin"))
            << "a listener may convert";
        EXPECT_THAT(pixel, ElementsAre(0.5f, 0.25f, 0.125f));
    };
    use_config(CONFIG_WITHOUT_FAMILIES);
    EXPECT_EQ(checked, 1u);
}

TEST_F(RaisedEvents, OfTheEndAreNone) {
    ColorIO::destroy();
    ColorIOAutoDetection::destroy();
    EXPECT_THAT(take_events(), IsEmpty());
}

} // namespace
