#include "colorio/color_io_manager.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "colorio/color_io.h"
#include "tests/colorio/running_module.h"

namespace {

using testing::IsEmpty;

/// Names that earlier versions stored, read through the facade.
class LegacyNames : public RunningModule {
protected:
    void TearDown() override {
        EXPECT_THAT(take_log(), IsEmpty()) << "no conversion says anything";
        EXPECT_THAT(take_events(), IsEmpty());
    }
    /// The same as `use_config`, with what it logs and raises put aside.
    void use_config_quietly(const std::string& config) {
        use_config(config);
        take_log();
        take_events();
    }

    static bool is_legacy(const char* name) { return ColorIO::is_legacy_builtin_color_space(name); }
    static std::string builtin(const char* name) {
        return str(ColorIO::convert_legacy_builtin_color_space(name));
    }
    static std::string widget(const char* name) {
        return str(ColorIO::convert_legacy_widget_display_color_space_to_display_view(name));
    }
    static std::string preferences(const char* name) {
        return str(ColorIO::convert_legacy_preferences_display_color_space_to_display_view(name));
    }
};

// Built-in color spaces

TEST_F(LegacyNames, AreTheThreeBuiltInNames) {
    EXPECT_TRUE(is_legacy("linear"));
    EXPECT_TRUE(is_legacy("sRGB"));
    EXPECT_TRUE(is_legacy("Cineon"));
}

TEST_F(LegacyNames, AreTheTwoDisplaySpacesBehindAnyFamily) {
    for (const char* name : {"Tavelion|sRGB", "Any|sRGB", "|sRGB", "Tavelion|Cineon", "A film.log|Cineon"})
        EXPECT_TRUE(is_legacy(name)) << name;
}

TEST_F(LegacyNames, AreNotLinearBehindAFamilyNorAnyOtherLetterCase) {
    for (const char* name : {"Tavelion|linear", "|linear", "Linear", "LINEAR", "srgb", "SRGB", "cineon",
                             "Tavelion|srgb", "sRGB|linear", "sRGB|", "linear|", "A|B|sRGB", "sRGB ",
                             " linear", "Tavelion.sRGB", "scene_linear", ""})
        EXPECT_FALSE(is_legacy(name)) << name;
}

TEST_F(LegacyNames, BecomeFullBuiltInLabels) {
    EXPECT_EQ(builtin("linear"), "Tavelion|linear");
    EXPECT_EQ(builtin("sRGB"), "Tavelion|sRGB");
    EXPECT_EQ(builtin("Cineon"), "Tavelion|Cineon");
}

TEST_F(LegacyNames, LoseTheirFamilyForTheBuiltInOne) {
    EXPECT_EQ(builtin("Any|sRGB"), "Tavelion|sRGB");
    EXPECT_EQ(builtin("Any|Cineon"), "Tavelion|Cineon");
    EXPECT_EQ(builtin("Tavelion|sRGB"), "Tavelion|sRGB");
    EXPECT_EQ(builtin("|Cineon"), "Tavelion|Cineon");
}

TEST_F(LegacyNames, ThatAreNotLegacyBecomeEmpty) {
    for (const char* name : {"Linear", "LINEAR", "Tavelion|linear", "Any|linear", "srgb", "A|B|sRGB", "film",
                             "Tavelion.sRGB", ""})
        EXPECT_EQ(builtin(name), "") << name;
}

TEST_F(LegacyNames, AreRecognizedWithEveryActiveConfig) {
    use_config_quietly(CONFIG_WITHOUT_FAMILIES);
    EXPECT_TRUE(is_legacy("linear"));
    EXPECT_TRUE(is_legacy("Any|sRGB"));
    EXPECT_EQ(builtin("linear"), "Tavelion|linear");
    EXPECT_EQ(builtin("Any|Cineon"), "Tavelion|Cineon");
}

// Display color spaces of widgets

TEST_F(LegacyNames, OfWidgetsBecomeViewsOfTheBuiltInDisplay) {
    EXPECT_EQ(widget("sRGB"), "Tavelion.sRGB");
    EXPECT_EQ(widget("Cineon"), "Tavelion.Cineon");
    EXPECT_EQ(widget("linear"), "Tavelion.linear");
}

TEST_F(LegacyNames, OfWidgetsBecomeEmptyWhenNoSuchViewIsPublished) {
    for (const char* name : {"srgb", "Tavelion|sRGB", "Tavelion.sRGB", "film", ""})
        EXPECT_EQ(widget(name), "") << name;
}

TEST_F(LegacyNames, OfWidgetsBecomeEmptyUnlessTheBuiltInConfigurationIsActive) {
    use_config_quietly(config_text({{"", "linear"}, {"", "sRGB"}},
                                   {{"Tavelion", "sRGB", "sRGB"}, {"Tavelion", "linear", "linear"}},
                                   {{"scene_linear", "linear"}}));
    ASSERT_TRUE(ColorIO::display_view_exists("Tavelion.sRGB"));
    EXPECT_EQ(widget("sRGB"), "");
    EXPECT_EQ(widget("linear"), "");
    use_builtin_config();
    take_log();
    take_events();
    EXPECT_EQ(widget("sRGB"), "Tavelion.sRGB");
}

// Display color spaces of preferences

TEST_F(LegacyNames, OfPreferencesTurnTheirFamilyIntoTheDisplay) {
    EXPECT_EQ(preferences("Tavelion|sRGB"), "Tavelion.sRGB");
    EXPECT_EQ(preferences("Tavelion|Cineon"), "Tavelion.Cineon");
}

TEST_F(LegacyNames, OfPreferencesBehindAFamilyWithoutSuchAViewBecomeEmpty) {
    EXPECT_EQ(preferences("Any|sRGB"), "");
    EXPECT_EQ(preferences("|Cineon"), "");
    use_config_quietly(CONFIG_WITHOUT_FAMILIES);
    EXPECT_EQ(preferences("Tavelion|sRGB"), "") << "the built-in views are not published now";
}

TEST_F(LegacyNames, OfPreferencesFindAFamilysDisplayInAConfigurationOfAFile) {
    use_config_quietly(
        config_text({{"Film", "sRGB"}, {"", "lin"}}, {{"Film", "sRGB", "lin"}}, {{"scene_linear", "lin"}}));
    EXPECT_EQ(preferences("Film|sRGB"), "Film.sRGB");
    EXPECT_EQ(preferences("Other|sRGB"), "");
}

TEST_F(LegacyNames, OfPreferencesBecomeEmptyForBareDisplaySpaces) {
    EXPECT_EQ(preferences("sRGB"), "");
    EXPECT_EQ(preferences("Cineon"), "");
}

TEST_F(LegacyNames, OfPreferencesTurnLinearIntoTheBuiltInDisplaysViewEvenWhenItIsNotPublished) {
    EXPECT_EQ(preferences("linear"), "Tavelion.linear");
    use_config_quietly(CONFIG_WITHOUT_FAMILIES);
    ASSERT_FALSE(ColorIO::display_view_exists("Tavelion.linear"));
    EXPECT_EQ(preferences("linear"), "Tavelion.linear");
}

TEST_F(LegacyNames, OfPreferencesFindTheViewThatShowsTheirColorSpace) {
    EXPECT_EQ(preferences("Tavelion|linear"), "Tavelion.linear");
    EXPECT_EQ(preferences("Any|linear"), "Tavelion.linear") << "the family plays no part";
    use_config_quietly(CONFIG_WITHOUT_FAMILIES);
    EXPECT_EQ(preferences("video"), "Monitor.Video.v2");
    EXPECT_EQ(preferences("Any|video"), "Monitor.Video.v2");
}

TEST_F(LegacyNames, OfPreferencesPreferTheFirstViewOfTheDefaultDisplay) {
    use_config_quietly(config_text({{"", "lin"}, {"", "film"}, {"", "video"}},
                                   {{"A monitor", "Linear", "lin"},
                                    {"A monitor", "Print", "film"},
                                    {"A monitor", "Print again", "film"},
                                    {"B cinema", "Film", "film"},
                                    {"B cinema", "Video", "video"},
                                    {"C beamer", "Video", "video"}},
                                   {{"scene_linear", "lin"}}));
    EXPECT_EQ(preferences("lin"), "A monitor.Linear");
    EXPECT_EQ(preferences("film"), "A monitor.Print");
    EXPECT_EQ(preferences("video"), "B cinema.Video") << "the other displays follow in order";
}

TEST_F(LegacyNames, OfPreferencesBecomeEmptyWhenNoViewShowsTheirColorSpace) {
    EXPECT_EQ(preferences("Linear"), "") << "names are compared exactly";
    EXPECT_EQ(preferences("film"), "");
    EXPECT_EQ(preferences(""), "");
    EXPECT_EQ(preferences("A|B|sRGB"), "");
    use_config_quietly(CONFIG_WITHOUT_FAMILIES);
    EXPECT_EQ(preferences("data"), "");
    EXPECT_EQ(preferences("Film"), "");
}

// Without a configuration

TEST_F(LegacyNames, OfDisplaysBecomeEmptyWithoutAnActiveConfiguration) {
    ColorIOManager unstarted(nullptr);
    EXPECT_TRUE(unstarted.is_legacy_builtin_color_space("linear"));
    EXPECT_EQ(str(unstarted.convert_legacy_builtin_color_space("Any|sRGB")), "Tavelion|sRGB");
    for (const char* name : {"linear", "sRGB", "Tavelion|sRGB", "film"}) {
        EXPECT_EQ(str(unstarted.convert_legacy_widget_display_color_space_to_display_view(name)), "") << name;
        EXPECT_EQ(str(unstarted.convert_legacy_preferences_display_color_space_to_display_view(name)), "")
            << name;
    }
}

TEST_F(LegacyNames, OfDisplaysBecomeEmptyWithoutABuiltInConfiguration) {
    want_file(write_file("config.ocio", CONFIG_WITHOUT_FAMILIES));
    ColorIOManager unstarted(&app);
    unstarted.use_file_config(true);
    take_log();
    take_events();
    ASSERT_TRUE(unstarted.get_config());
    const auto preferences = [&](const char* name) {
        return str(unstarted.convert_legacy_preferences_display_color_space_to_display_view(name));
    };
    EXPECT_EQ(preferences("linear"), "");
    EXPECT_EQ(str(unstarted.convert_legacy_widget_display_color_space_to_display_view("linear")), "");
    EXPECT_EQ(preferences("video"), "Monitor.Video.v2") << "the active configuration is asked";
}

} // namespace
