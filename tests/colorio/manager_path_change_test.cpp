#include <cstdio>
#include <memory>
#include <string>

#include "colorio/color_io_converter.h"
#include "host/gmath/gmath_vec4.h"
#include "tests/colorio/manager_sources_fixture.h"

using testing::ElementsAre;
using testing::IsEmpty;

using ManagerPathChange = ManagerSources;

TEST_F(ManagerPathChange, OnlySettlesTheBuiltInSceneLinearWhileNoFileIsWanted) {
    app.color_space_file_path = write_file("film.ocio", FILM).c_str();
    manager.update_file_config_path();
    EXPECT_THAT(events.take(), ElementsAre(SCENE_LINEAR_EVENT));
    EXPECT_THAT(take_log(), IsEmpty());
    EXPECT_TRUE(manager.is_using_tavelion_config());
    EXPECT_THAT(spaces(), ElementsAre("sRGB", "Cineon", "linear"));
}

TEST_F(ManagerPathChange, DoesNotLookForAFileThatIsNotWanted) {
    app.color_space_file_path = path_of("missing.ocio").c_str();
    manager.update_file_config_path();
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(ManagerPathChange, LeavesAnActiveFileThatIsNoLongerWantedActive) {
    use_file_and_forget(write_file("film.ocio", FILM));
    app.use_color_space_file = false;
    manager.update_file_config_path();
    EXPECT_FALSE(manager.is_using_tavelion_config());
    EXPECT_THAT(spaces(), ElementsAre("film"));
    EXPECT_EQ(str(manager.get_ROLE_SCENE_LINEAR()), "linear");
    EXPECT_THAT(events.take(), ElementsAre(SCENE_LINEAR_EVENT));
}

TEST_F(ManagerPathChange, MakesTheWantedFileActiveWithoutTouchingTheCDLList) {
    change_path(write_file("film.ocio", FILM));
    EXPECT_FALSE(manager.is_using_tavelion_config());
    EXPECT_THAT(spaces(), ElementsAre("film"));
    EXPECT_THAT(events.take(), ElementsAre(SCENE_LINEAR_EVENT, LUT_LIST_EVENT));
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(ManagerPathChange, ReadsTheSamePathAgain) {
    const std::string path = write_file("config.ocio", FILM);
    change_path(path);
    write_file("config.ocio", VIDEO);
    change_path(path);
    EXPECT_THAT(spaces(), ElementsAre("video"));
    EXPECT_EQ(str(manager.get_ROLE_SCENE_LINEAR()), "video");
}

TEST_F(ManagerPathChange, AMissingFilePublishesTheBuiltInConfiguration) {
    const std::string missing = path_of("missing.ocio");
    use_file_and_forget(write_file("film.ocio", FILM));
    change_path(missing);
    EXPECT_THAT(take_log(), ElementsAre(LogLine{2, not_found(missing)}));
    EXPECT_TRUE(manager.is_using_tavelion_config());
    EXPECT_THAT(spaces(), ElementsAre("sRGB", "Cineon", "linear"));
    EXPECT_EQ(str(manager.get_ROLE_SCENE_LINEAR()), "linear");
    EXPECT_THAT(events.take(), ElementsAre(SCENE_LINEAR_EVENT, LUT_LIST_EVENT));
}

TEST_F(ManagerPathChange, AnEmptyPathPublishesTheBuiltInConfigurationWithoutAWord) {
    use_file_and_forget(write_file("film.ocio", FILM));
    change_path("");
    EXPECT_THAT(take_log(), IsEmpty());
    EXPECT_THAT(spaces(), ElementsAre("sRGB", "Cineon", "linear"));
    EXPECT_THAT(events.take(), ElementsAre(SCENE_LINEAR_EVENT, LUT_LIST_EVENT));
}

TEST_F(ManagerPathChange, AFailureReleasesTheFileConfiguration) {
    use_file(write_file("film.ocio", FILM));
    const auto film = manager.get_config();
    change_path(path_of("missing.ocio"));
    EXPECT_EQ(film.use_count(), 1);
}

TEST_F(ManagerPathChange, AFailureReleasesAFileConfigurationThatIsNotActiveToo) {
    use_file(write_file("film.ocio", FILM));
    const auto film = manager.get_config();
    manager.use_file_config(false);
    EXPECT_GT(film.use_count(), 1);
    change_path(path_of("missing.ocio"));
    EXPECT_EQ(film.use_count(), 1);
}

TEST_F(ManagerPathChange, AFileThatFailsTheCheckPublishesTheBuiltInConfiguration) {
    use_file_and_forget(write_file("film.ocio", FILM));
    change_path(write_file("broken.ocio", ROLE_OF_UNKNOWN_SPACE));
    EXPECT_THAT(take_log(), ElementsAre(OcioExceptionAt(1)));
    EXPECT_THAT(spaces(), ElementsAre("sRGB", "Cineon", "linear"));
    EXPECT_THAT(events.take(), ElementsAre(SCENE_LINEAR_EVENT, LUT_LIST_EVENT));
}

TEST_F(ManagerPathChange, TheEnvironmentStandsInForAMissingFile) {
    const std::string missing = path_of("missing.ocio");
    const std::string studio = write_file("studio.ocio", STUDIO);
    ocio_variable.set(studio);
    change_path(missing);
    EXPECT_THAT(take_log(), ElementsAre(LogLine{2, not_found(missing)}, LogLine{2, defaulting_to(studio)}));
    EXPECT_THAT(spaces(), ElementsAre("studio"));
    EXPECT_THAT(events.take(), ElementsAre(SCENE_LINEAR_EVENT, LUT_LIST_EVENT));
}

// The path is known good and equal, the file is gone, and no configuration of it is held any more.
TEST_F(ManagerPathChange, AKnownGoodPathWithoutFileOrConfigurationDoesNotBringTheManagerDown) {
    const std::string film = write_file("film.ocio", FILM);
    use_file(film);
    change_path("");
    std::remove(film.c_str());

    use_file(film);
    EXPECT_EQ(str(manager.get_color_space_name(99)), "");
    CoreString display, view;
    manager.get_default_display_view(display, view);
    manager.update_default_color_space_name();

    manager.use_file_config(false);
    EXPECT_TRUE(manager.is_using_tavelion_config());
    EXPECT_THAT(spaces(), ElementsAre("sRGB", "Cineon", "linear"));
}

// Edited look-up tables

// A LUT of two entries that multiplies by `top`.
static std::string lut_text(const std::string& top) {
    return "Version 1\nFrom 0.0 1.0\nLength 2\nComponents 1\n{\n        0.0\n        " + top + "\n}\n";
}

static float red_of(const ColorIOConverter& converter) {
    GMathVec4<float> pixel(1.0f, 1.0f, 1.0f, 1.0f);
    EXPECT_TRUE(converter.convert_pixel(pixel));
    return pixel[0];
}

TEST_F(ManagerPathChange, TakesAnEditedLutFileIntoAccountAndLeavesConvertersAsTheyAre) {
    const std::string config = write_file("config.ocio", R"(ocio_profile_version: 1
search_path: .
strictparsing: true
roles: {scene_linear: lin}
displays:
  Monitor:
    - !<View> {name: Film, colorspace: scaled}
colorspaces:
  - !<ColorSpace>
    name: lin
  - !<ColorSpace>
    name: scaled
    to_reference: !<FileTransform> {src: scale.spi1d, interpolation: linear}
)");
    write_file("scale.spi1d", lut_text("0.5"));
    change_path(config);
    ColorIOConverter before;
    ASSERT_TRUE(before.configure("scaled", "lin"));
    EXPECT_FLOAT_EQ(red_of(before), 0.5f);

    write_file("scale.spi1d", lut_text("0.25"));
    change_path(config);

    ColorIOConverter after;
    ASSERT_TRUE(after.configure("scaled", "lin"));
    EXPECT_FLOAT_EQ(red_of(after), 0.25f);
    EXPECT_FLOAT_EQ(red_of(before), 0.5f);
}
