#include "standalone/standalone_app.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "host/event/event_ids.h"
#include "host/of/of_enum.h"
#include "host/of/of_object_factory.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// Notes every event of an application.
class AppObserver : public EventObject {
public:
    explicit AppObserver(StandaloneApp& app) {
        for (const CoreString* event :
             {&EVT_ID_APPLICATION_COLOR_SPACE_FILE_USE_CHANGED,
              &EVT_ID_APPLICATION_COLOR_SPACE_FILE_PATH_CHANGED, &EVT_ID_APPLICATION_CDL_FILE_PATH_CHANGED,
              &EVT_ID_APPLICATION_COLOR_SPACE_NAME_CHANGED,
              &EVT_ID_APPLICATION_COLOR_SPACE_BY_EXT_FILE_PATH_CHANGED})
            connect(app, *event, &AppObserver::on_event, nullptr);
    }
    void on_event(AppBase& sender, const EventInfo& info, OfObject*) {
        events.emplace_back(info.id.view());
        path_seen = dynamic_cast<OfApp&>(sender).get_color_space_file_path();
    }
    std::vector<std::string> take() { return std::exchange(events, {}); }

    std::vector<std::string> events;
    CoreString path_seen;
};

TEST(StandaloneApp, StartsWithEverythingOff) {
    const StandaloneApp app;
    EXPECT_FALSE(app.get_use_color_space_file());
    EXPECT_EQ(app.get_use_color_space_by_extension_file(), 0u);
    EXPECT_EQ(app.get_color_space_file_path(), "");
    EXPECT_EQ(app.get_cdl_library_file_path(), "");
    EXPECT_EQ(app.get_color_space_by_extension_file_path(), "");
    EXPECT_EQ(app.get_default_color_space_name(), "linear");
}

TEST(StandaloneApp, EverySetterStoresAndRaisesItsEvent) {
    StandaloneApp app;
    AppObserver observer(app);
    app.set_use_color_space_file(true);
    EXPECT_TRUE(app.get_use_color_space_file());
    EXPECT_THAT(observer.take(), ElementsAre("EVT_ID_APPLICATION_COLOR_SPACE_FILE_USE_CHANGED"));
    app.set_color_space_file_path("/config.ocio");
    EXPECT_EQ(app.get_color_space_file_path(), "/config.ocio");
    EXPECT_EQ(observer.path_seen, "/config.ocio") << "listeners find the new value";
    EXPECT_THAT(observer.take(), ElementsAre("EVT_ID_APPLICATION_COLOR_SPACE_FILE_PATH_CHANGED"));
    app.set_cdl_library_file_path("/looks.ccc");
    EXPECT_EQ(app.get_cdl_library_file_path(), "/looks.ccc");
    EXPECT_THAT(observer.take(), ElementsAre("EVT_ID_APPLICATION_CDL_FILE_PATH_CHANGED"));
    app.set_default_color_space_name("sRGB");
    EXPECT_EQ(app.get_default_color_space_name(), "sRGB");
    EXPECT_THAT(observer.take(), ElementsAre("EVT_ID_APPLICATION_COLOR_SPACE_NAME_CHANGED"));
    app.set_use_color_space_by_extension_file(1);
    EXPECT_EQ(app.get_use_color_space_by_extension_file(), 1u);
    EXPECT_THAT(observer.take(), ElementsAre("EVT_ID_APPLICATION_COLOR_SPACE_BY_EXT_FILE_PATH_CHANGED"));
    app.set_color_space_by_extension_file_path("/map.yaml");
    EXPECT_EQ(app.get_color_space_by_extension_file_path(), "/map.yaml");
    EXPECT_THAT(observer.take(), ElementsAre("EVT_ID_APPLICATION_COLOR_SPACE_BY_EXT_FILE_PATH_CHANGED"));
}

TEST(StandaloneApp, SettingTheSameValueRaisesNothing) {
    StandaloneApp app;
    app.set_color_space_file_path("/config.ocio");
    AppObserver observer(app);
    app.set_use_color_space_file(false);
    app.set_color_space_file_path("/config.ocio");
    app.set_cdl_library_file_path("");
    app.set_default_color_space_name("linear");
    app.set_use_color_space_by_extension_file(0);
    app.set_color_space_by_extension_file_path("");
    EXPECT_THAT(observer.take(), IsEmpty());
}

TEST(StandaloneApp, HasOneObjectFactory) {
    StandaloneApp app;
    OfEnum* const roles = app.get_object_factory().add_enum("roles_enum", 9);
    EXPECT_EQ(app.get_object_factory().get_enum("roles_enum"), roles);
}

} // namespace
