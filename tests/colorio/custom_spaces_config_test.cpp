#include "colorio/color_io_manager.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "colorio/ocio/config.h"
#include "host/event/event_ids.h"
#include "tests/colorio/custom_space_fixture.h"
#include "tests/colorio/manager_sources_fixture.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Not;

// What setting the list does to the built-in configuration, and which one is active afterwards.

TEST_F(CustomSpaces, MakeTheBuiltInConfigurationActiveWhenNoFileIsWanted) {
    edit({space_record("mine", write_lut("two.spi1d", 2))});
    EXPECT_TRUE(manager().is_using_tavelion_config());
}

TEST_F(CustomSpaces, MakeTheBuiltInConfigurationActiveWhenAFileIsWantedButNoneNamed) {
    use_config(CONFIG_WITHOUT_FAMILIES);
    ASSERT_FALSE(manager().is_using_tavelion_config());
    app.color_space_file_path = "";
    edit({space_record("mine", write_lut("two.spi1d", 2))});
    EXPECT_TRUE(manager().is_using_tavelion_config());
    EXPECT_THAT(spaces(), Contains("mine"));
}

TEST_F(CustomSpaces, MakeTheBuiltInConfigurationActiveWhenTheFileInUseIsNoLongerWanted) {
    use_config(CONFIG_WITHOUT_FAMILIES);
    app.use_color_space_file = false;
    ASSERT_FALSE(manager().is_using_tavelion_config()) << "no event was raised yet";
    edit({space_record("mine", write_lut("two.spi1d", 2))});
    EXPECT_TRUE(manager().is_using_tavelion_config());
    EXPECT_THAT(spaces(), ElementsAre("sRGB", "Cineon", "linear", "mine"));
}

TEST_F(CustomSpaces, LeaveTheConfigurationOfAFileActive) {
    use_config(CONFIG_WITHOUT_FAMILIES);
    take_events();
    edit({space_record("mine", write_lut("two.spi1d", 2))});
    EXPECT_FALSE(manager().is_using_tavelion_config());
    EXPECT_THAT(spaces(), ElementsAre("lin", "film", "video", "data"));
    EXPECT_THAT(views(), ElementsAre("Monitor.Film", "Monitor.Video.v2", "Cinema.Film"));
    EXPECT_EQ(str(manager().get_ROLE_SCENE_LINEAR()), "lin");
    EXPECT_THAT(take_events(), ElementsAre(SCENE_LINEAR_EVENT, LUT_LIST_EVENT));

    use_builtin_config();
    EXPECT_THAT(spaces(), Contains("mine"));
    EXPECT_THAT(views(), Contains("Tavelion.mine"));
}

TEST_F(CustomSpaces, GetTheirViewThoughTheConfigurationOfAFileHasOneOfThatName) {
    use_config(config_text({{"", "lin"}}, {{"Tavelion", "mine", "lin"}}, {{"scene_linear", "lin"}}));
    ASSERT_THAT(views(), ElementsAre("Tavelion.mine"));
    take_log();
    edit({space_record("mine", write_lut("two.spi1d", 2))});
    EXPECT_THAT(
        take_log(),
        Not(Contains(warning("Color Management: duplicate display view 'Tavelion.mine' was ignored.\n"))));
    use_builtin_config();
    EXPECT_THAT(views(), Contains("Tavelion.mine"));
}

TEST_F(CustomSpaces, AppearInTheBuiltInConfigurationThatStandsInForAWantedFile) {
    want_file(path_of("absent.ocio"));
    app.raise_event(EVT_ID_APPLICATION_COLOR_SPACE_FILE_USE_CHANGED);
    ASSERT_TRUE(manager().is_using_tavelion_config());
    edit({space_record("mine", write_lut("two.spi1d", 2))});
    EXPECT_TRUE(manager().is_using_tavelion_config());
    EXPECT_THAT(spaces(), ElementsAre("sRGB", "Cineon", "linear", "mine"));
    EXPECT_THAT(views(), ElementsAre("Tavelion.sRGB", "Tavelion.Cineon", "Tavelion.linear", "Tavelion.mine"));
}

TEST_F(CustomSpaces, LeaveTheConfigurationOfTheEnvironmentActive) {
    EnvGuard variable("OCIO", write_file("environment.ocio", CONFIG_WITHOUT_FAMILIES));
    app.use_color_space_file = true;
    app.raise_event(EVT_ID_APPLICATION_COLOR_SPACE_FILE_USE_CHANGED);
    ASSERT_FALSE(manager().is_using_tavelion_config());
    edit({space_record("mine", write_lut("two.spi1d", 2))});
    EXPECT_FALSE(manager().is_using_tavelion_config());
    EXPECT_THAT(spaces(), ElementsAre("lin", "film", "video", "data"));
}

TEST_F(CustomSpaces, LeaveTheConfigurationOfAFileActiveAsTheFileIsNow) {
    use_config(CONFIG_WITHOUT_FAMILIES);
    ASSERT_THAT(spaces(), ElementsAre("lin", "film", "video", "data"));
    write_file("config.ocio", config_text({{"", "base"}, {"", "print"}}, {{"Wall", "Print", "print"}},
                                          {{"scene_linear", "base"}}));
    edit({space_record("mine", write_lut("two.spi1d", 2))});
    EXPECT_FALSE(manager().is_using_tavelion_config());
    EXPECT_THAT(spaces(), ElementsAre("base", "print"));
    EXPECT_THAT(views(), ElementsAre("Wall.Print"));
    EXPECT_EQ(str(manager().get_ROLE_SCENE_LINEAR()), "base");
}

TEST_F(CustomSpaces, LeaveTheConfigurationOfAFileAsItWasWhenTheFileFailsItsCheckNow) {
    for (const std::string& text : {ROLE_OF_UNKNOWN_SPACE, std::string(NO_CONFIGURATION)}) {
        use_config(CONFIG_WITHOUT_FAMILIES);
        const ocio::ConstConfigRcPtr before = manager().get_config();
        take_log();
        write_file("config.ocio", text);
        edit({space_record("mine", write_lut("two.spi1d", 2))});
        EXPECT_EQ(manager().get_config(), before);
        EXPECT_THAT(spaces(), ElementsAre("lin", "film", "video", "data"));
        EXPECT_EQ(str(manager().get_ROLE_SCENE_LINEAR()), "lin");
        EXPECT_THAT(take_log(),
                    Contains(testing::AnyOf(OcioExceptionAt(LOG_ERROR), OcioExceptionAt(LOG_WARNING))));
    }
}

TEST_F(CustomSpaces, ShowTheirEditedFilesWhenTheListIsSetAgain) {
    const auto record = space_record("mine", write_lut("gain.spi1d", 2));
    edit({record});
    EXPECT_TRUE(is_near(convert_gray("linear", "mine", 0.5f), 1.0));
    write_lut("gain.spi1d", 3);
    edit({record});
    EXPECT_TRUE(is_near(convert_gray("linear", "mine", 0.5f), 1.5));
}

TEST_F(CustomSpaces, ShowTheirEditedCorrectionsWhenTheListIsSetAgain) {
    const auto record = space_record("mine", "", write_file("grade.cc", correction_text("x", "2")));
    edit({record});
    EXPECT_TRUE(is_near(convert_gray("linear", "mine", 0.5f), 1.0));
    write_file("grade.cc", correction_text("x", "3"));
    edit({record});
    EXPECT_TRUE(is_near(convert_gray("linear", "mine", 0.5f), 1.5));
}

TEST_F(CustomSpaces, TellThatTheBuiltInConfigurationFailedThoughAFileIsActive) {
    use_config(CONFIG_WITHOUT_FAMILIES);
    log.set_level(LOG_ERROR);
    take_log();
    app.answer_folder_request = [](unsigned int, CoreString&) { return false; };
    edit({});
    EXPECT_FALSE(manager().is_using_tavelion_config());
    EXPECT_THAT(take_log(),
                ElementsAre(error("Color Management: failed to create the temporary folder for the built-in "
                                  "LUT files.\n"),
                            error(INVALID), OcioExceptionAt(LOG_ERROR)));
}

TEST_F(CustomSpaces, EmptyTheBuiltInConfigurationThatTheyReplace) {
    const ocio::ConstConfigRcPtr before = manager().get_config();
    ASSERT_EQ(ocio::get_num_color_spaces(before), 3);
    ASSERT_EQ(ocio::get_num_displays(before), 1);
    edit({space_record("mine", write_lut("two.spi1d", 2))});
    EXPECT_NE(manager().get_config(), before);
    EXPECT_EQ(ocio::get_num_color_spaces(before), 0);
    EXPECT_EQ(ocio::get_num_displays(before), 0);
}

} // namespace
