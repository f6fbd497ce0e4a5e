#include <string>
#include <vector>

#include "colorio/color_io.h"
#include "host/event/event_ids.h"
#include "host/event/event_object.h"
#include "host/of/of_enum.h"
#include "tests/colorio/library_differences.h"
#include "tests/colorio/manager_names_fixture.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

LogLine duplicate_space(const std::string& label) {
    return {2, "Color Management: duplicate color space '" + label +
                   "' is already defined in the current configuration.\n"};
}

LogLine duplicate_view(const std::string& color_space) {
    return {2, "Color Management: duplicate view transform '" + color_space +
                   "' is already defined in the current configuration.\n"};
}

using ManagerEnumerations = ManagerNames;
using ManagerDuplicates = ManagerNames;

} // namespace

// The enumerations and lists

TEST_F(ManagerEnumerations, LabelsCarryTheFamilyWhereThereIsOneAndListsDoNot) {
    publish({{"Camera", "log"}, {"", "lin"}, {"Display", "video"}}, {{"Monitor", "Film", "lin"}});
    EXPECT_THAT(labels(app.get_enum("color_space")), ElementsAre("Camera|log", "lin", "Display|video"));
    EXPECT_THAT(strings(manager.get_color_space_names()), ElementsAre("log", "lin", "video"));
}

TEST_F(ManagerEnumerations, ASpaceHasTheSameValueInAllThreeMenusCountedFromOne) {
    publish({{"", "lin"}, {"Camera", "log"}}, {{"Monitor", "Film", "lin"}});
    EXPECT_THAT(values(app.get_enum("color_space")), ElementsAre(1, 2));
    EXPECT_THAT(values(app.get_enum("color_picking")), ElementsAre(0, 1, 2));
    EXPECT_THAT(values(app.get_enum("internal_color_space")), ElementsAre(0, 1, 2));
    for (const char* menu : {"color_space", "color_picking", "internal_color_space"})
        EXPECT_EQ(app.get_enum(menu)->get_value("Camera|log"), 2u) << menu;
}

TEST_F(ManagerEnumerations, TheTwoPseudoLabelsStandFirstAsTheyAreAtTheTime) {
    ColorIO::s_default_color_picking = "Use Default";
    ColorIO::s_default_scene_linear = "Use scene_linear";
    publish({{"", "lin"}, {"Camera", "log"}}, {{"Monitor", "Film", "lin"}});
    EXPECT_THAT(labels(app.get_enum("color_picking")), ElementsAre("Use Default", "lin", "Camera|log"));
    EXPECT_THAT(labels(app.get_enum("internal_color_space")),
                ElementsAre("Use scene_linear", "lin", "Camera|log"));
}

// The facade names the pseudo labels only after the manager has published for the first time.
TEST_F(ManagerEnumerations, TheFirstPublicationHasEmptyPseudoLabelsAndTheNextRealOnes) {
    ColorIOManager::destroy();
    ASSERT_TRUE(ColorIO::init(&app));
    EXPECT_THAT(labels(app.get_enum("color_picking")),
                ElementsAre("", "Tavelion|sRGB", "Tavelion|Cineon", "Tavelion|linear"));
    EXPECT_THAT(labels(app.get_enum("internal_color_space")),
                ElementsAre("", "Tavelion|sRGB", "Tavelion|Cineon", "Tavelion|linear"));

    ColorIOManager::get_instance()->use_file_config(false);

    EXPECT_THAT(labels(app.get_enum("color_picking")),
                ElementsAre("Use Default", "Tavelion|sRGB", "Tavelion|Cineon", "Tavelion|linear"));
    EXPECT_THAT(labels(app.get_enum("internal_color_space")),
                ElementsAre("Use scene_linear", "Tavelion|sRGB", "Tavelion|Cineon", "Tavelion|linear"));
}

TEST_F(ManagerEnumerations, ViewsHaveThePositionOfTheirSpaceAsValue) {
    publish({{"", "lin"}, {"Camera", "log"}, {"Display", "video"}},
            {{"Monitor", "Video", "video"}, {"Monitor", "Log", "log"}, {"Projector", "Film", "lin"}});
    EXPECT_THAT(labels(app.get_enum("view_transform")),
                ElementsAre("Monitor.Video", "Monitor.Log", "Projector.Film"));
    EXPECT_THAT(values(app.get_enum("view_transform")), ElementsAre(2, 1, 0));
    EXPECT_THAT(strings(manager.get_display_view_names()),
                ElementsAre("Monitor.Video", "Monitor.Log", "Projector.Film"));
}

TEST_F(ManagerEnumerations, TheBuiltInConfigurationHasThreeOfEach) {
    EXPECT_THAT(labels(app.get_enum("color_space")),
                ElementsAre("Tavelion|sRGB", "Tavelion|Cineon", "Tavelion|linear"));
    EXPECT_THAT(values(app.get_enum("color_space")), ElementsAre(1, 2, 3));
    EXPECT_THAT(labels(app.get_enum("view_transform")),
                ElementsAre("Tavelion.sRGB", "Tavelion.Cineon", "Tavelion.linear"));
    EXPECT_THAT(values(app.get_enum("view_transform")), ElementsAre(0, 1, 2));
}

TEST_F(ManagerEnumerations, AnEnumerationTellsOfOneChangePerPublication) {
    for (const char* name : {"color_space", "color_picking", "internal_color_space", "view_transform"}) {
        const unsigned int before = app.get_enum(name)->get_change_count();
        manager.use_file_config(false);
        EXPECT_EQ(app.get_enum(name)->get_change_count(), before + 1) << name;
        EXPECT_FALSE(app.get_enum(name)->is_asleep()) << name;
    }
}

/// The enumerations that raised their event, in order.
class ChangeRecorder : public EventObject {
public:
    ChangeRecorder(ScriptedApp& app, const std::vector<const char*>& names) {
        for (const char* name : names)
            connect(*app.get_enum(name), EVT_ID_OF_ENUM_CHANGE, &ChangeRecorder::record, nullptr);
    }
    std::vector<std::string> changed;

private:
    void record(AppBase& sender, const EventInfo&, OfObject*) {
        changed.push_back(static_cast<OfEnum&>(sender).get_name().get_data());
    }
};

TEST_F(ManagerEnumerations, WakeInAFixedOrder) {
    ChangeRecorder recorder(app, {"color_space", "color_picking", "internal_color_space", "view_transform"});
    manager.use_file_config(false);
    EXPECT_THAT(recorder.changed,
                ElementsAre("view_transform", "color_space", "internal_color_space", "color_picking"));
}

TEST_F(ManagerEnumerations, AllAreAwakeWhenTheListEventIsRaised) {
    EventRecorder events;
    unsigned int asleep = 0, calls = 0;
    events.on_event = [&](const std::string& event) {
        if (event != LUT_LIST_EVENT)
            return;
        ++calls;
        for (const char* name : {"color_space", "color_picking", "internal_color_space", "view_transform"})
            asleep += app.get_enum(name)->is_asleep();
    };
    manager.use_file_config(false);
    EXPECT_EQ(calls, 1u);
    EXPECT_EQ(asleep, 0u);
}

TEST_F(ManagerEnumerations, OnlyTheColorSpaceMenuGetsItsSeparatorBackWithEachPublication) {
    EXPECT_EQ(manager.get_color_space_enum_separator(), '|');
    app.get_enum("color_space")->set_separator('/');
    app.get_enum("color_picking")->set_separator('/');
    EXPECT_EQ(manager.get_color_space_enum_separator(), '/');

    manager.use_file_config(false);

    EXPECT_EQ(manager.get_color_space_enum_separator(), '|');
    EXPECT_EQ(str(app.get_enum("color_space")->get_separator()), "|");
    EXPECT_EQ(str(app.get_enum("color_picking")->get_separator()), "/");
    EXPECT_THAT(labels(app.get_enum("color_space")),
                ElementsAre("Tavelion|sRGB", "Tavelion|Cineon", "Tavelion|linear"));
}

TEST_F(ManagerEnumerations, AConfigurationWithoutSceneLinearPublishesTheSpaceThatIsMadeForIt) {
    publish_text(config_text({{"Camera", "log"}}, {{"Monitor", "Film", "log"}}));
    EXPECT_THAT(labels(app.get_enum("color_space")), ElementsAre("Camera|log", "linear"));
    EXPECT_THAT(values(app.get_enum("view_transform")), ElementsAre(0));
}

TEST_F(ManagerEnumerations, AManySpacedConfigurationIsPublishedWhole) {
    std::vector<SpaceText> spaces;
    for (unsigned int i = 0; i < 500; ++i)
        spaces.push_back({"Family " + std::to_string(i % 7), "space " + std::to_string(i)});
    publish(spaces, {{"Monitor", "Film", "space 499"}});
    ASSERT_EQ(manager.get_color_space_names().get_count(), 500u);
    EXPECT_EQ(str(manager.get_color_space_name(499)), "Family 2|space 499");
    EXPECT_EQ(manager.get_color_space_index("SPACE 499"), 499u);
    EXPECT_EQ(app.get_enum("view_transform")->get_value("Monitor.Film"), 499u);
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(ManagerEnumerations, InactiveSpacesOfAVersion2ConfigurationAreNotPublished) {
    SKIP_WHERE_LISTED();
    publish_text(R"(ocio_profile_version: 2
search_path: .
roles: {default: lin, scene_linear: lin}
inactive_colorspaces: [hidden]
displays:
  Monitor:
    - !<View> {name: Film, colorspace: lin}
colorspaces:
  - !<ColorSpace>
    name: lin
  - !<ColorSpace>
    name: hidden
  - !<ColorSpace>
    name: log
    family: Camera
)");
    EXPECT_THAT(labels(app.get_enum("color_space")), ElementsAre("lin", "Camera|log"));
    EXPECT_THAT(take_log(), IsEmpty());
}

// Duplicates

// The bar in the middle belongs once to the name, once to the family.
TEST_F(ManagerDuplicates, OfASpacesLabelTheFirstIsPublishedAndTheSecondReported) {
    publish({{"A", "b|c"}, {"", "lin"}, {"A|b", "c"}}, {{"Monitor", "Film", "lin"}});
    EXPECT_THAT(labels(app.get_enum("color_space")), ElementsAre("A|b|c", "lin"));
    EXPECT_THAT(values(app.get_enum("color_space")), ElementsAre(1, 2));
    EXPECT_THAT(strings(manager.get_color_space_names()), ElementsAre("b|c", "lin"));
    EXPECT_THAT(take_log(), ElementsAre(duplicate_space("A|b|c")));
}

TEST_F(ManagerDuplicates, ABareNameThatLooksLikeALabelIsADuplicateToo) {
    publish({{"", "Camera|log"}, {"Camera", "log"}}, {{"Monitor", "Film", "log"}});
    EXPECT_THAT(labels(app.get_enum("color_space")), ElementsAre("Camera|log"));
    EXPECT_THAT(strings(manager.get_color_space_names()), ElementsAre("Camera|log"));
    EXPECT_THAT(take_log(), ElementsAre(duplicate_space("Camera|log")));
}

TEST_F(ManagerDuplicates, ASpaceThatFollowsASkippedOneTakesItsValue) {
    publish({{"A", "b|c"}, {"A|b", "c"}, {"", "lin"}}, {{"Monitor", "Film", "lin"}});
    EXPECT_THAT(values(app.get_enum("color_space")), ElementsAre(1, 2));
    EXPECT_EQ(app.get_enum("color_space")->get_value("lin"), 2u);
    EXPECT_THAT(values(app.get_enum("view_transform")), ElementsAre(1));
}

TEST_F(ManagerDuplicates, LabelsThatDifferInCaseAreNone) {
    publish({{"Camera", "log"}, {"CAMERA", "video"}, {"", "camera|log"}}, {{"Monitor", "Film", "log"}});
    EXPECT_THAT(labels(app.get_enum("color_space")), ElementsAre("Camera|log", "CAMERA|video", "camera|log"));
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(ManagerDuplicates, OfAViewsLabelTheFirstIsPublishedAndTheSecondNamedByItsSpace) {
    publish({{"", "lin"}, {"", "video"}}, {{"Monitor", "Film.v2", "lin"}, {"Monitor.Film", "v2", "video"}});
    EXPECT_THAT(strings(manager.get_display_view_names()), ElementsAre("Monitor.Film.v2"));
    EXPECT_THAT(values(app.get_enum("view_transform")), ElementsAre(0));
    EXPECT_THAT(take_log(), ElementsAre(duplicate_view("video")));
}

TEST_F(ManagerDuplicates, AViewWhoseLabelIsASpacesLabelIsDropped) {
    publish({{"", "lin"}, {"", "Monitor.Film"}}, {{"Monitor", "Film", "lin"}, {"Monitor", "Video", "lin"}});
    EXPECT_THAT(strings(manager.get_display_view_names()), ElementsAre("Monitor.Video"));
    EXPECT_THAT(labels(app.get_enum("view_transform")), ElementsAre("Monitor.Video"));
    EXPECT_THAT(take_log(), ElementsAre(duplicate_view("lin")));
    EXPECT_FALSE(manager.display_view_exists("Monitor.Film"));
}

TEST_F(ManagerDuplicates, AViewWhoseLabelIsOnlyASpacesPlainNameIsKept) {
    publish({{"", "lin"}, {"Family", "Monitor.Film"}}, {{"Monitor", "Film", "lin"}});
    EXPECT_THAT(strings(manager.get_display_view_names()), ElementsAre("Monitor.Film"));
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(ManagerDuplicates, AreReportedAgainWithEachPublication) {
    publish({{"", "Camera|log"}, {"Camera", "log"}}, {{"Monitor", "Film", "log"}});
    take_log();
    manager.use_file_config(true);
    EXPECT_THAT(take_log(), ElementsAre(duplicate_space("Camera|log")));
}

TEST_F(ManagerDuplicates, AreNotReportedToALogThatWantsErrorsOnly) {
    log.set_level(1);
    publish({{"", "Camera|log"}, {"Camera", "log"}}, {{"Monitor", "Film", "log"}});
    EXPECT_THAT(take_log(), IsEmpty());
    EXPECT_EQ(manager.get_color_space_names().get_count(), 1u);
}
