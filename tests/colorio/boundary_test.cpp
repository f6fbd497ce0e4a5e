// What the module does when OpenColorIO or the host throws: nothing leaves it.

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "colorio/color_io.h"
#include "colorio/color_io_auto_detection.h"
#include "colorio/color_io_manager.h"
#include "host/event/event_ids.h"
#include "host/of/of_enum.h"
#include "tests/colorio/custom_space_files.h"
#include "tests/colorio/library_differences.h"
#include "tests/colorio/running_module.h"

namespace {

using testing::AllOf;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

class Boundary : public RunningModule {
protected:
    ColorIOManager& manager() { return *ColorIOManager::get_instance(); }
    bool restart() {
        ColorIO::destroy();
        take_log();
        return ColorIO::init(&app);
    }
};

/// A name that OpenColorIO refuses, as an example of everything that it may refuse while a config is made.
TEST_F(Boundary, ACdlConfigurationThatCannotBeMadeFailsItsCheck) {
    const CoreString usual = ColorIOManager::s_default_CDL_name;
    ColorIOManager::s_default_CDL_name = "";
    ColorIO::destroy();
    take_log();
    const bool started = ColorIOManager::static_init(&app);
    ColorIOManager::s_default_CDL_name = usual;
    EXPECT_FALSE(started);
    const std::vector<LogLine> lines = take_log();
    ASSERT_GE(lines.size(), 3u);
    EXPECT_EQ(lines[0], error("Color Management: invalid OCIO configuration.\n"));
    EXPECT_THAT(lines[1], OcioExceptionAt(1));
    EXPECT_EQ(lines[2], error("Color Management: failed to create Tavelion built-in CDL configuration.\n"));
    EXPECT_THAT(strings(ColorIO::get_color_space_names()), ElementsAre("sRGB", "Cineon", "linear"))
        << "the rest started";
}

TEST_F(Boundary, MalformedListsInTheEnvironmentFailTheStartWhereTheyAreRead) {
    const std::string start =
        library_differences::expected("start under a malformed list in the environment");
    const bool are_read = start == "fails";
    for (const char* variable : {"OCIO_ACTIVE_DISPLAYS", "OCIO_ACTIVE_VIEWS"}) {
        SCOPED_TRACE(variable);
        const EnvGuard list(variable, "\"unclosed, quote");
        EXPECT_TRUE(restart()) << "the detector of formats has no part in it";
        ColorIO::destroy();
        take_log();
        EXPECT_EQ(ColorIOManager::static_init(&app), !are_read);
        const std::vector<LogLine> lines = take_log();
        EXPECT_EQ(ColorIO::color_space_exists("Tavelion|sRGB"), !are_read);
        if (!are_read) {
            EXPECT_THAT(lines, Not(Contains(OcioExceptionAt(1))));
            continue;
        }
        EXPECT_THAT(lines, Contains(error("Color Management: invalid OCIO configuration.\n")));
        EXPECT_THAT(lines, Contains(OcioExceptionAt(1)));
        EXPECT_THAT(lines, Contains(error("Color Management: failed to create Tavelion built-in color space "
                                          "configuration.\n")));
    }
    EXPECT_TRUE(ColorIOManager::static_init(&app)) << "a later start succeeds";
    EXPECT_TRUE(ColorIO::color_space_exists("Tavelion|sRGB"));
}

TEST_F(Boundary, PixelsThatOpenColorIORefusesAreAFalseAnswerOfTheFacade) {
    std::vector<float> image = {0.25f, 0.5f};
    EXPECT_FALSE(ColorIO::convert_buffer(image.data(), 1, 1, 2, "linear", "sRGB"));
    EXPECT_THAT(take_log(), ElementsAre(OcioExceptionAt(1)));
    EXPECT_THAT(image, ElementsAre(0.25f, 0.5f));
}

/// The host's calls, each throwing.
class ThrowingHost : public Boundary {
protected:
    static constexpr char REASON[] = "the host is out of order";
    const LogLine reported = error(std::string("Color Management: ") + REASON + "\n");

    [[noreturn]] static void fail() { throw std::runtime_error(REASON); }
};

TEST_F(ThrowingHost, FailsTheStartWhereItMakesNoFolder) {
    app.answer_folder_request = [](unsigned int, CoreString&) -> bool { fail(); };
    ColorIO::destroy();
    take_log();
    EXPECT_FALSE(ColorIOManager::static_init(&app));
    EXPECT_THAT(take_log(), Contains(reported));
    app.answer_folder_request = nullptr;
    EXPECT_TRUE(restart());
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(ThrowingHost, ThatThrowsSomethingElseIsSurvivedToo) {
    app.answer_folder_request = [](unsigned int, CoreString&) -> bool { throw 7; };
    ColorIO::destroy();
    take_log();
    EXPECT_FALSE(ColorIOManager::static_init(&app));
    EXPECT_THAT(take_log(), Contains(error("Color Management: unknown error.\n")));
}

TEST_F(ThrowingHost, ThatThrowsAtAnEventStopsNoOperation) {
    EventRecorder recorder;
    std::vector<std::string> heard;
    recorder.on_event = [&](const std::string& event) {
        heard.push_back(event);
        fail();
    };
    use_config(CONFIG_WITHOUT_FAMILIES);
    EXPECT_THAT(strings(ColorIO::get_color_space_names()), ElementsAre("lin", "film", "video", "data"));
    EXPECT_THAT(heard, Contains(LUT_LIST_EVENT));
    EXPECT_THAT(heard, Contains(CDL_LIST_EVENT));
    EXPECT_THAT(take_log(), Contains(reported));
}

TEST_F(ThrowingHost, ThatThrowsWhereAMenuChangesStopsNoOperation) {
    class Observer : public EventObject {
    public:
        void watch(OfEnum& menu) { connect(menu, EVT_ID_OF_ENUM_CHANGE, &Observer::refuse, nullptr); }
        void refuse(AppBase&, const EventInfo&, OfObject*) { fail(); }
    };
    Observer observer;
    for (const char* menu : {"color_space", "view_transform", "color_decision_list"})
        observer.watch(*app.get_enum(menu));
    use_config(CONFIG_WITHOUT_FAMILIES);
    EXPECT_THAT(labels(app.get_enum("color_space")), ElementsAre("lin", "film", "video", "data"));
    EXPECT_FALSE(app.get_enum("color_picking")->is_asleep());
    EXPECT_THAT(take_log(), Contains(reported));
}

TEST_F(ThrowingHost, WhoseLogThrowsLosesMessagesAndNothingElse) {
    class RefusingLog : public CoreLogHandler {
    public:
        RefusingLog() { replaced = set_main_log_handler(this); }
        ~RefusingLog() override { set_main_log_handler(replaced); }
        void log(unsigned int, const CoreLogStream&) override {
            ++count;
            fail();
        }
        unsigned int count = 0;

    private:
        CoreLogHandler* replaced;
    };
    RefusingLog refusing;
    use_config(config_text({{"", "twice"}, {"", "other"}}, {{"D", "V", "twice"}, {"D", "other", "other"}}));
    app.cdl_library_file_path = write_file("damaged.ccc", "<a").c_str();
    app.raise_event(EVT_ID_APPLICATION_CDL_FILE_PATH_CHANGED);
    EXPECT_THAT(strings(ColorIO::get_color_space_names()), ElementsAre("twice", "other", "linear"));
    EXPECT_GT(refusing.count, 0u);
}

/// Every operation of the flat interface without a manager.
TEST_F(Boundary, WithoutAManagerNothingIsFound) {
    ColorIO::destroy();
    ColorIOAutoDetection::destroy();
    CoreString display, view;
    EXPECT_FALSE(ColorIO::color_space_exists("Tavelion|sRGB"));
    EXPECT_FALSE(ColorIO::display_view_exists("Tavelion.sRGB"));
    EXPECT_EQ(ColorIO::get_color_space_index("sRGB"), 0xFFFFFFFFu);
    EXPECT_EQ(ColorIO::get_color_space_name(0), "");
    EXPECT_EQ(ColorIO::get_color_space_names().get_count(), 0u);
    EXPECT_EQ(ColorIO::get_full_color_space_name("sRGB"), "");
    EXPECT_EQ(ColorIO::get_display_view_names().get_count(), 0u);
    EXPECT_FALSE(ColorIO::get_display_view("Tavelion.sRGB", display, view));
    EXPECT_EQ(ColorIO::get_default_display_view(), "");
    EXPECT_FALSE(ColorIO::get_default_display_view(display, view));
    EXPECT_EQ(ColorIO::get_color_space_from_display_view("Tavelion.sRGB"), "");
    EXPECT_EQ(ColorIO::get_role_color_space(0), "");
    EXPECT_EQ(ColorIO::get_ROLE_SCENE_LINEAR(), "");
    EXPECT_EQ(ColorIO::get_default_color_picker_space_name(), "");
    EXPECT_EQ(ColorIO::get_CDL_index("No CDL"), 0xFFFFFFFFu);
    EXPECT_EQ(ColorIO::get_CDL_name(0), "");
    EXPECT_FALSE(ColorIO::is_legacy_builtin_color_space("linear"));
    EXPECT_EQ(ColorIO::convert_legacy_builtin_color_space("Any|sRGB"), "");
    EXPECT_EQ(ColorIO::convert_legacy_widget_display_color_space_to_display_view("sRGB"), "");
    EXPECT_EQ(ColorIO::convert_legacy_preferences_display_color_space_to_display_view("linear"), "");
    EXPECT_EQ(ColorIO::get_instance()->get_default_color_space_from_ext("exr"), "");
}

} // namespace
