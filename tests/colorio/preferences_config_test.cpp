#include "tests/colorio/preferences_fixture.h"

namespace {

using testing::Contains;
using testing::ElementsAre;

TEST_F(Preferences, LoadTheConfigurationOfTheWantedFile) {
    want_file(write_file("config.ocio", CONFIG_WITHOUT_FAMILIES));
    EXPECT_TRUE(manager().load_config(&entry));
    EXPECT_FALSE(manager().is_using_tavelion_config());
    EXPECT_THAT(spaces(), ElementsAre("lin", "film", "video", "data"));
    EXPECT_EQ(str(manager().get_ROLE_SCENE_LINEAR()), "lin");
    EXPECT_THAT(take_events(), ElementsAre(SCENE_LINEAR_EVENT, LUT_LIST_EVENT, CDL_LIST_EVENT));
}

TEST_F(Preferences, LoadTheConfigurationOfTheEnvironment) {
    const std::string path = write_file("environment.ocio", CONFIG_WITHOUT_FAMILIES);
    EnvGuard variable("OCIO", path);
    app.use_color_space_file = true;
    EXPECT_TRUE(manager().load_config(nullptr));
    EXPECT_FALSE(manager().is_using_tavelion_config());
    EXPECT_THAT(spaces(), ElementsAre("lin", "film", "video", "data"));
}

TEST_F(Preferences, LeaveTheBuiltInConfigurationActiveWhenTheWantedFileIsMissing) {
    want_file(path_of("absent.ocio"));
    EXPECT_FALSE(manager().load_config(nullptr));
    EXPECT_TRUE(manager().is_using_tavelion_config());
    EXPECT_THAT(take_log(), Contains(warning("Color Management: OCIO configuration file '" +
                                             path_of("absent.ocio") + "' not found.\n")));
    EXPECT_THAT(take_events(), ElementsAre(LUT_LIST_EVENT, CDL_LIST_EVENT));
}

TEST_F(Preferences, LeaveTheBuiltInConfigurationActiveWhenTheWantedFileIsDamaged) {
    want_file(write_file("config.ocio", "no configuration"));
    EXPECT_FALSE(manager().load_config(nullptr));
    EXPECT_TRUE(manager().is_using_tavelion_config());
    EXPECT_THAT(take_log(), Contains(OcioExceptionAt(LOG_ERROR)));
}

TEST_F(Preferences, MakeTheBuiltInConfigurationActiveWhenTheFileInUseGivesWayToAMissingOne) {
    use_config(CONFIG_WITHOUT_FAMILIES);
    ASSERT_FALSE(manager().is_using_tavelion_config());
    want_file(path_of("absent.ocio"));
    EXPECT_FALSE(manager().load_config(&entry));
    EXPECT_TRUE(manager().is_using_tavelion_config());
    EXPECT_THAT(spaces(), ElementsAre("sRGB", "Cineon", "linear"));
}

TEST_F(Preferences, MakeTheBuiltInConfigurationActiveWhenNoFileIsWanted) {
    use_config(CONFIG_WITHOUT_FAMILIES);
    app.use_color_space_file = false;
    EXPECT_FALSE(manager().load_config(nullptr));
    EXPECT_TRUE(manager().is_using_tavelion_config());
    EXPECT_THAT(spaces(), ElementsAre("sRGB", "Cineon", "linear"));
}

TEST_F(Preferences, KeepCustomSpacesForLaterWhileAFileIsActive) {
    want_file(write_file("config.ocio", CONFIG_WITHOUT_FAMILIES));
    add_space("mine", write_file("two.spi1d", lut_text(2)));
    EXPECT_TRUE(manager().load_config(&entry));
    EXPECT_THAT(spaces(), ElementsAre("lin", "film", "video", "data"));
    use_builtin_config();
    EXPECT_THAT(spaces(), ElementsAre("sRGB", "Cineon", "linear", "mine"));
}

} // namespace
