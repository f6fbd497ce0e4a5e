#include <string>
#include <string_view>
#include <vector>

#include "colorio/color_io.h"
#include "colorio/color_io_constants.h"
#include "colorio/color_io_manager.h"
#include "host/of/of_enum.h"
#include "tests/colorio/manager_fixture.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const unsigned int NO_POSITION = 0xFFFFFFFFu;

LogLine duplicate_space(const std::string& label) {
    return {2, "Color Management: duplicate color space '" + label +
                   "' is already defined in the current configuration.\n"};
}

LogLine duplicate_view(const std::string& color_space) {
    return {2, "Color Management: duplicate view transform '" + color_space +
                   "' is already defined in the current configuration.\n"};
}

/// A started manager that makes configurations given as text active.
class ManagerNames : public ManagerTest {
protected:
    ManagerNames() { take_log(); }

    void publish(const std::vector<SpaceText>& spaces, const std::vector<ViewText>& views) {
        publish_text(config_text(spaces, views, {{"scene_linear", spaces[0].name}}));
    }
    void publish_text(const std::string& config) {
        want_file(write_file("config.ocio", config));
        manager.use_file_config(true);
        ASSERT_FALSE(manager.is_using_tavelion_config());
    }

    ColorIOManager& manager = start_manager();
};

using ManagerEnumerations = ManagerNames;
using ManagerDuplicates = ManagerNames;
using ManagerSpaceLookUp = ManagerNames;
using ManagerViewLookUp = ManagerNames;

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

// Colour spaces by name and position

TEST_F(ManagerSpaceLookUp, ASpaceExistsOnlyUnderItsExactLabel) {
    publish({{"Camera", "log"}, {"", "lin"}}, {{"Monitor", "Film", "lin"}});
    EXPECT_TRUE(manager.color_space_exists("Camera|log"));
    EXPECT_TRUE(manager.color_space_exists("lin"));
    EXPECT_FALSE(manager.color_space_exists("log"));
    EXPECT_FALSE(manager.color_space_exists("camera|log"));
    EXPECT_FALSE(manager.color_space_exists("LIN"));
    EXPECT_FALSE(manager.color_space_exists("Monitor.Film"));
    EXPECT_FALSE(manager.color_space_exists(""));
}

TEST_F(ManagerSpaceLookUp, AFamilysSpaceIsFoundByItsBareNameThoughItDoesNotExistUnderIt) {
    EXPECT_FALSE(manager.color_space_exists("linear"));
    EXPECT_EQ(manager.get_color_space_index("LINEAR"), 2u);
}

TEST_F(ManagerSpaceLookUp, PositionsIgnoreCaseAndFamily) {
    for (const char* name : {"Tavelion|sRGB", "sRGB", "srgb", "SRGB", "tavelion|SRGB", "Any|sRGB", "|srgb"})
        EXPECT_EQ(manager.get_color_space_index(name), 0u) << name;
    EXPECT_EQ(manager.get_color_space_index("Cineon"), 1u);
}

TEST_F(ManagerSpaceLookUp, UnknownNamesHaveNoPosition) {
    for (const char* name : {"", "|", "sRGB ", "Tavelion", "Tavelion|", "Any|Tavelion|sRGB", "sRGB|linear2"})
        EXPECT_EQ(manager.get_color_space_index(name), NO_POSITION) << name;
}

TEST_F(ManagerSpaceLookUp, OfTwoFamiliesTheBareNameFindsTheLaterPositionAndTheEarlierLabel) {
    publish({{"", "Film|log"}, {"", "lin"}, {"Video", "log"}}, {{"Monitor", "Film", "lin"}});
    EXPECT_THAT(labels(app.get_enum("color_space")), ElementsAre("Film|log", "lin", "Video|log"));
    EXPECT_EQ(manager.get_color_space_index("log"), 2u);
    EXPECT_EQ(manager.get_color_space_index("Film|log"), 2u);
    EXPECT_EQ(str(manager.get_full_color_space_name("log")), "Film|log");
}

// Only the part up to the first bar is taken for the family.
TEST_F(ManagerSpaceLookUp, AFamilyThatHoldsABarHidesItsSpacesFromTheirBareNames) {
    publish({{"", "lin"}, {"Camera|Film", "log"}}, {{"Monitor", "Film", "log"}});
    EXPECT_EQ(manager.get_color_space_index("log"), NO_POSITION);
    EXPECT_EQ(manager.get_color_space_index("Camera|Film|log"), 1u);
    EXPECT_EQ(manager.get_color_space_index("Other|film|LOG"), 1u);
    EXPECT_EQ(str(manager.get_full_color_space_name("log")), "log");
    EXPECT_EQ(str(manager.get_full_color_space_name("Film|log")), "Camera|Film|log");
    EXPECT_THAT(values(app.get_enum("view_transform")), ElementsAre(NO_POSITION));
}

TEST_F(ManagerSpaceLookUp, LettersOutsideAsciiAreComparedAsTheyAre) {
    publish({{"", "Ärzte"}, {"", "lin"}}, {{"Monitor", "Film", "lin"}});
    EXPECT_EQ(manager.get_color_space_index("ÄRZTE"), 0u);
    EXPECT_EQ(manager.get_color_space_index("ärzte"), NO_POSITION);
}

TEST_F(ManagerSpaceLookUp, APositionGivesTheLabel) {
    EXPECT_EQ(str(manager.get_color_space_name(0)), "Tavelion|sRGB");
    EXPECT_EQ(str(manager.get_color_space_name(2)), "Tavelion|linear");
    EXPECT_EQ(str(manager.get_color_space_name(3)), "");
    EXPECT_EQ(str(manager.get_color_space_name(NO_POSITION)), "");
}

TEST_F(ManagerSpaceLookUp, TheFullNameIsFoundByTheExactBareNameOnly) {
    EXPECT_EQ(str(manager.get_full_color_space_name("sRGB")), "Tavelion|sRGB");
    EXPECT_EQ(str(manager.get_full_color_space_name("linear")), "Tavelion|linear");
    EXPECT_EQ(str(manager.get_full_color_space_name("srgb")), "srgb");
    EXPECT_EQ(str(manager.get_full_color_space_name("Tavelion|sRGB")), "Tavelion|sRGB");
    EXPECT_EQ(str(manager.get_full_color_space_name("Any|sRGB")), "Any|sRGB");
    EXPECT_EQ(str(manager.get_full_color_space_name("")), "");
}

TEST_F(ManagerSpaceLookUp, ASpaceWithoutFamilyIsItsOwnFullName) {
    publish({{"", "lin"}}, {{"Monitor", "Film", "lin"}});
    EXPECT_EQ(str(manager.get_full_color_space_name("lin")), "lin");
}

TEST_F(ManagerSpaceLookUp, FollowsEveryPublication) {
    EXPECT_EQ(manager.get_color_space_index("linear"), 2u);
    publish({{"", "film"}, {"Camera", "linear"}}, {{"Monitor", "Film", "film"}});
    EXPECT_EQ(manager.get_color_space_index("linear"), 1u);
    EXPECT_EQ(manager.get_color_space_index("sRGB"), NO_POSITION);
    EXPECT_EQ(str(manager.get_full_color_space_name("linear")), "Camera|linear");
    manager.use_file_config(false);
    EXPECT_EQ(manager.get_color_space_index("linear"), 2u);
    EXPECT_EQ(manager.get_color_space_index("film"), NO_POSITION);
}

TEST_F(ManagerSpaceLookUp, FindsNothingInAnEmptiedEnumeration) {
    EXPECT_EQ(manager.get_color_space_index("linear"), 2u);
    app.get_enum("color_space")->remove_all_values();
    EXPECT_EQ(manager.get_color_space_index("linear"), NO_POSITION);
    EXPECT_FALSE(manager.color_space_exists("Tavelion|linear"));
    EXPECT_EQ(str(manager.get_color_space_name(0)), "");
    EXPECT_EQ(str(manager.get_full_color_space_name("linear")), "linear");
}

TEST_F(ManagerSpaceLookUp, SeesALabelThatTheHostAdds) {
    EXPECT_EQ(manager.get_color_space_index("extra"), NO_POSITION);
    app.get_enum("color_space")->add_value("Host|Extra", 4);
    EXPECT_EQ(manager.get_color_space_index("extra"), 3u);
    EXPECT_EQ(str(manager.get_full_color_space_name("Extra")), "Host|Extra");
}

TEST_F(ManagerSpaceLookUp, SeesAsManyLabelsInPlaceOfTheOldOnes) {
    EXPECT_EQ(manager.get_color_space_index("linear"), 2u);
    OfEnum* menu = app.get_enum("color_space");
    menu->remove_all_values();
    for (unsigned int value : {1u, 2u, 3u})
        menu->add_value(("Host|Space " + std::to_string(value)).c_str(), value);
    EXPECT_EQ(manager.get_color_space_index("space 2"), 1u);
    EXPECT_EQ(manager.get_color_space_index("linear"), NO_POSITION);
    EXPECT_EQ(str(manager.get_full_color_space_name("Space 3")), "Host|Space 3");
}

TEST_F(ManagerSpaceLookUp, ACopyOfTheManagerFollowsThePublicationsOfTheOriginal) {
    const ColorIOManager copy(manager);
    EXPECT_EQ(copy.get_color_space_index("linear"), 2u);
    publish({{"", "a"}, {"", "b"}, {"", "c"}}, {{"Monitor", "Film", "a"}});
    EXPECT_EQ(copy.get_color_space_index("b"), 1u);
    EXPECT_EQ(copy.get_color_space_index("linear"), NO_POSITION);
}

TEST_F(ManagerSpaceLookUp, ANameThatGoesOnBehindANulIsAnotherName) {
    const CoreString name(std::string_view("sRGB\0 of old", 12));
    EXPECT_EQ(manager.get_color_space_index(name), NO_POSITION);
    EXPECT_FALSE(manager.color_space_exists(CoreString(std::string_view("Tavelion|sRGB\0", 14))));
    EXPECT_EQ(str(manager.get_full_color_space_name(name)), str(name));
}

TEST_F(ManagerSpaceLookUp, WithoutSeparatorFamiliesAreNotStripped) {
    app.get_enum("color_space")->set_separator('\0');
    EXPECT_EQ(manager.get_color_space_index("Tavelion|sRGB"), 0u);
    EXPECT_EQ(manager.get_color_space_index("TAVELION|SRGB"), 0u);
    EXPECT_EQ(manager.get_color_space_index("sRGB"), NO_POSITION);
    EXPECT_EQ(str(manager.get_full_color_space_name("sRGB")), "sRGB");
}

TEST_F(ManagerSpaceLookUp, AnotherSeparatorStripsAtThatCharacter) {
    publish({{"", "lin"}, {"", "a/b|c"}}, {{"Monitor", "Film", "lin"}});
    app.get_enum("color_space")->set_separator('/');
    EXPECT_EQ(manager.get_color_space_index("b|c"), 1u);
    EXPECT_EQ(manager.get_color_space_index("c"), NO_POSITION);
    EXPECT_EQ(str(manager.get_full_color_space_name("b|c")), "a/b|c");
}

// Display views

TEST_F(ManagerViewLookUp, AViewExistsOnlyUnderItsExactLabel) {
    EXPECT_TRUE(manager.display_view_exists("Tavelion.sRGB"));
    EXPECT_FALSE(manager.display_view_exists("tavelion.srgb"));
    EXPECT_FALSE(manager.display_view_exists("sRGB"));
    EXPECT_FALSE(manager.display_view_exists("Tavelion|sRGB"));
    EXPECT_FALSE(manager.display_view_exists(""));
}

TEST_F(ManagerViewLookUp, DisplayAndViewMayHoldFullStops) {
    publish({{"", "lin"}}, {{"Monitor.A", "Film", "lin"}, {"Monitor.A", "Film.v1.2", "lin"}});
    CoreString display, view;
    EXPECT_TRUE(manager.get_display_view("Monitor.A.Film.v1.2", display, view));
    EXPECT_EQ(str(display), "Monitor.A");
    EXPECT_EQ(str(view), "Film.v1.2");
    EXPECT_TRUE(manager.get_display_view("Monitor.A.Film", display, view));
    EXPECT_EQ(str(display), "Monitor.A");
    EXPECT_EQ(str(view), "Film");
}

TEST_F(ManagerViewLookUp, OfTwoViewsWithOneLabelTheFirstIsFound) {
    publish({{"", "lin"}}, {{"Monitor", "Film.v2", "lin"}, {"Monitor.Film", "v2", "lin"}});
    CoreString display, view;
    EXPECT_TRUE(manager.get_display_view("Monitor.Film.v2", display, view));
    EXPECT_EQ(str(display), "Monitor");
    EXPECT_EQ(str(view), "Film.v2");
}

TEST_F(ManagerViewLookUp, UnknownLabelsAreNotTakenApart) {
    CoreString display, view;
    EXPECT_FALSE(manager.get_display_view("Tavelion.Unknown", display, view));
    EXPECT_FALSE(manager.get_display_view("tavelion.sRGB", display, view));
    EXPECT_FALSE(manager.get_display_view("Tavelion", display, view));
    EXPECT_FALSE(manager.get_display_view("", display, view));
}

// The view is in the configuration, but its label is a colour space's, so it was not published.
TEST_F(ManagerViewLookUp, AViewThatWasDroppedAsADuplicateIsNotTakenApart) {
    publish({{"", "lin"}, {"", "Monitor.Film"}}, {{"Monitor", "Film", "lin"}});
    CoreString display, view;
    EXPECT_FALSE(manager.get_display_view("Monitor.Film", display, view));
}

// A fall-back keeps the published names of the file while the built-in configuration is active.
TEST_F(ManagerViewLookUp, APublishedLabelThatTheActiveConfigurationLacksIsNotTakenApart) {
    publish({{"", "lin"}}, {{"Monitor", "Film", "lin"}});
    app.color_space_file_path = "";
    manager.use_file_config(true);
    ASSERT_TRUE(manager.is_using_tavelion_config());
    CoreString display, view;
    EXPECT_TRUE(manager.display_view_exists("Monitor.Film"));
    EXPECT_FALSE(manager.get_display_view("Monitor.Film", display, view));
}

TEST_F(ManagerViewLookUp, AViewLeadsToTheLabelOfItsSpace) {
    publish({{"", "lin"}, {"Display", "video"}}, {{"Monitor", "Film", "video"}, {"Monitor", "Raw", "lin"}});
    EXPECT_EQ(str(manager.get_color_space_from_display_view("Monitor.Film")), "Display|video");
    EXPECT_EQ(str(manager.get_color_space_from_display_view("Monitor.Raw")), "lin");
}

TEST_F(ManagerViewLookUp, ALabelThatIsNoViewLeadsToItself) {
    EXPECT_EQ(str(manager.get_color_space_from_display_view("Monitor.Unknown")), "Monitor.Unknown");
    EXPECT_EQ(str(manager.get_color_space_from_display_view("Tavelion|sRGB")), "Tavelion|sRGB");
    EXPECT_EQ(str(manager.get_color_space_from_display_view("")), "");
}

TEST_F(ManagerViewLookUp, AViewOfALabelSharedByTwoSpacesLeadsToTheLater) {
    publish({{"", "log"}, {"", "Film|log"}}, {{"Monitor", "Log", "log"}});
    EXPECT_THAT(values(app.get_enum("view_transform")), ElementsAre(1));
    EXPECT_EQ(str(manager.get_color_space_from_display_view("Monitor.Log")), "Film|log");
}

// Such a configuration fails the check; it becomes active when a file that passed is edited and switched on
// again.
TEST_F(ManagerViewLookUp, AViewOfAnUnknownSpaceIsPublishedAndLeadsToItself) {
    publish({{"", "lin"}}, {{"Monitor", "Film", "lin"}});
    publish({{"", "lin"}}, {{"Monitor", "Film", "lin"}, {"Monitor", "Lost", "nowhere"}});
    EXPECT_THAT(strings(manager.get_display_view_names()), ElementsAre("Monitor.Film", "Monitor.Lost"));
    EXPECT_THAT(values(app.get_enum("view_transform")), ElementsAre(0, NO_POSITION));
    EXPECT_EQ(str(manager.get_color_space_from_display_view("Monitor.Lost")), "Monitor.Lost");
}

TEST_F(ManagerViewLookUp, AViewWithAPositionPastTheSpacesLeadsToItself) {
    app.get_enum("view_transform")->add_value("Host.View", 3);
    app.get_enum("view_transform")->add_value("Host.Other", 2);
    EXPECT_EQ(str(manager.get_color_space_from_display_view("Host.View")), "Host.View");
    EXPECT_EQ(str(manager.get_color_space_from_display_view("Host.Other")), "Tavelion|linear");
}

TEST_F(ManagerViewLookUp, TheDefaultViewIsTheFirstOfTheDefaultDisplay) {
    publish({{"", "lin"}, {"", "video"}},
            {{"Monitor", "Video", "video"}, {"Monitor", "Film", "lin"}, {"Projector", "Film", "lin"}});
    CoreString display, view;
    EXPECT_TRUE(manager.get_default_display_view(display, view));
    EXPECT_EQ(str(display), "Monitor");
    EXPECT_EQ(str(view), "Video");
    EXPECT_EQ(str(manager.get_default_display_view()), "Monitor.Video");
}

TEST_F(ManagerViewLookUp, TheDefaultViewFollowsTheListsOfActiveDisplaysAndViews) {
    publish_text(
        "active_displays: [Projector]\nactive_views: [Film]\n" +
        config_text({{"", "lin"}},
                    {{"Monitor", "Film", "lin"}, {"Projector", "Video", "lin"}, {"Projector", "Film", "lin"}},
                    {{"scene_linear", "lin"}}));
    EXPECT_EQ(str(manager.get_default_display_view()), "Projector.Film");
}
