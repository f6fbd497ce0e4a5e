#include <string>
#include <string_view>

#include "host/of/of_enum.h"
#include "tests/colorio/manager_names_fixture.h"

using testing::ElementsAre;

using ManagerSpaceLookUp = ManagerNames;
using ManagerViewLookUp = ManagerNames;

// Color spaces by name and position

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

// The view is in the configuration, but its label is a color space's, so it was not published.
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
