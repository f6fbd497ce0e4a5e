#include "viewer/view_model.h"

#include <filesystem>

#include "colorio/color_io_manager.h"
#include "tests/colorio/library_differences.h"
#include "tests/viewer/change_fixture.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

TEST_F(ModelThatFollowsChanges, ShowsAnEditedLut) {
    model->set_view(FIRST, "Screen.Shown");
    EXPECT_FLOAT_EQ(shown_white(), 0.5);
    write_lut(folder, 0.75);
    follow();
    EXPECT_FLOAT_EQ(shown_white(), 0.75);
    EXPECT_THAT(model->get_note(), HasSubstr("shown.spi1d"));
    EXPECT_THAT(format_all(model->get_errors()), IsEmpty());
}

TEST_F(ModelThatFollowsChanges, ShowsAnEditedConfiguration) {
    std::string text = folder.read("test.ocio");
    text.replace(text.find("name: Shown"), 11, "name: Other");
    text.replace(text.find("active_views: [Raw, Shown]"), 26, "active_views: [Other, Raw]");
    model->set_view(FIRST, "Screen.Shown");
    folder.write("test.ocio", text);
    follow();
    EXPECT_THAT(live_config->get_views(), testing::UnorderedElementsAre("Screen.Other", "Screen.Raw"));
    EXPECT_EQ(model->get_settings(FIRST).view, live_config->get_default_view()) << "the view is gone";
    EXPECT_EQ(model->get_note(), "read test.ocio again; view 'Screen.Shown' no longer exists, using '" +
                                     live_config->get_default_view() + "'");
    EXPECT_THAT(format_all(model->get_errors()), IsEmpty());
}

TEST_F(ModelThatFollowsChanges, ShowsAnEditedCdlLibraryOfThePreferences) {
    workflow::SessionOptions options;
    options.preferences_path =
        folder.write("preferences.yaml", "cdl_library_file_path: " + folder.file("looks.ccc") + "\n");
    folder.write("looks.ccc", make_library("0.5 0.5 0.5"));
    restart(options);
    model->set_view(FIRST, "Tavelion.linear");
    model->set_cdl("grade");
    EXPECT_FLOAT_EQ(shown_white(), 0.5);
    folder.write("looks.ccc", make_library("0.25 0.25 0.25"));
    follow();
    EXPECT_FLOAT_EQ(shown_white(), 0.25);
    EXPECT_THAT(format_all(model->get_errors()), IsEmpty());
}

TEST_F(ModelThatFollowsChanges, ReadsTheConfigurationOfTheEnvironmentAgain) {
    const EnvGuard named("OCIO", config);
    restart(workflow::SessionOptions());
    model->set_view(FIRST, "Screen.Shown");
    EXPECT_FLOAT_EQ(shown_white(), 0.5);
    write_lut(folder, 0.25);
    follow();
    EXPECT_FLOAT_EQ(shown_white(), 0.25);
    EXPECT_THAT(format_all(model->get_errors()), IsEmpty());
    std::filesystem::remove(config);
    follow();
    EXPECT_THAT(format_all(model->get_errors()), ElementsAre(HasSubstr("test.ocio")));
    EXPECT_FLOAT_EQ(shown_white(), 0.25);
}

TEST_F(ModelThatFollowsChanges, ReadsAConfigurationOfTheLibraryItselfAgain) {
    SKIP_WHERE_LISTED();
    const EnvGuard named("OCIO", "ocio://default");
    restart(workflow::SessionOptions());
    model->use_cdl_library(folder.write("grade.ccc", make_library("0.5 0.5 0.5")));
    folder.write("grade.ccc", make_library("0.25 0.25 0.25"));
    follow();
    EXPECT_THAT(format_all(model->get_errors()), IsEmpty());
    EXPECT_EQ(live_config->get_config_path(), "ocio://default");
}

TEST_F(ModelThatFollowsChanges, ShowsAnEditedLutOfTheUsersOwnSpace) {
    const TempDir elsewhere;
    const auto write_own_lut = [&](const char* white) {
        return elsewhere.write("own.spi1d",
                               std::string("Version 1\nFrom 0 1\nLength 2\nComponents 1\n{\n0\n") + white +
                                   "\n}\n");
    };
    ColorIOManager& manager = *ColorIOManager::get_instance();
    CoreVector<ColorIOManager::ColorSpaceDef> spaces = manager.get_tavelion_color_spaces();
    spaces.append({"own", write_own_lut("0.5").c_str(), "", "", 8, 1, {0, 1, 0}, false});
    model->use_config("");
    manager.set_tavelion_config(spaces);
    model->use_config(""); // has the model watch what there is now
    model->set_input_space("Tavelion|linear");
    model->set_view(FIRST, "Tavelion.own");
    EXPECT_FLOAT_EQ(shown_white(), 0.5);
    EXPECT_THAT(format_all(model->get_errors()), IsEmpty());
    write_own_lut("0.25");
    follow();
    EXPECT_FLOAT_EQ(shown_white(), 0.25);
    EXPECT_EQ(model->get_settings(FIRST).view, "Tavelion.own");
}

TEST_F(ModelThatFollowsChanges, ShowsAnEditedLutThatLiesElsewhere) {
    const TempDir elsewhere;
    write_lut(elsewhere, 0.5);
    std::string text = folder.read("test.ocio");
    text.replace(text.find("src: shown.spi1d"), 16, "src: " + elsewhere.file("luts/shown.spi1d"));
    folder.write("test.ocio", text);
    model->use_config(config);
    model->set_view(FIRST, "Screen.Shown");
    EXPECT_FLOAT_EQ(shown_white(), 0.5);
    write_lut(elsewhere, 0.25);
    follow();
    EXPECT_FLOAT_EQ(shown_white(), 0.25);
}

TEST_F(ModelThatFollowsChanges, ShowsALutWhoseFolderIsMadeLater) {
    SKIP_WHERE_LISTED();
    std::filesystem::remove_all(folder.file("luts"));
    model->use_config(config);
    model->set_view(FIRST, "Screen.Shown");
    EXPECT_FALSE(model->get_conversion(FIRST));
    EXPECT_THAT(format_all(model->get_errors()), ElementsAre(HasSubstr("shown.spi1d")));
    write_lut(folder, 0.5);
    follow();
    EXPECT_FLOAT_EQ(shown_white(), 0.5);
    EXPECT_THAT(format_all(model->get_errors()), IsEmpty());
}

TEST_F(ModelThatFollowsChanges, MakesNothingAnewForFilesThatTheConfigurationDoesNotName) {
    const auto chain = model->get_conversion(FIRST);
    folder.write("other.cube", "beside the image");
    folder.write("luts/other.spi1d", "on the search path");
    folder.write("luts/deep/shown.spi1d", "of the same name, in another folder");
    folder.write("other.ocio", "beside the configuration");
    EXPECT_FALSE(model->follow_changes());
    EXPECT_EQ(model->get_conversion(FIRST), chain);
    write_lut(folder, 0.25);
    follow();
    EXPECT_NE(model->get_conversion(FIRST), chain);
}

TEST_F(ModelThatFollowsChanges, SaysWhichNamesHadToBeReplaced) {
    model->use_cdl_library(folder.write("grade.ccc", make_library("0.5 0.5 0.5")));
    EXPECT_EQ(model->get_note(), "using grade.ccc");
    model->set_cdl("grade");
    std::string renamed = make_library("0.5 0.5 0.5");
    renamed.replace(renamed.find("\"grade\""), 7, "\"other\"");
    folder.write("grade.ccc", renamed);
    follow();
    EXPECT_EQ(model->get_note(), "read grade.ccc again; CDL 'grade' no longer exists, using 'No CDL'");
    model->set_input_space("shown");
    model->use_config("");
    EXPECT_THAT(model->get_note(),
                HasSubstr("color space 'shown' no longer exists, using 'Tavelion|linear'"));
    EXPECT_THAT(model->get_note(),
                HasSubstr("second view 'Screen.Raw' no longer exists, using 'Tavelion.sRGB'"));
    folder.write("grade.ccc", renamed);
    follow();
    EXPECT_EQ(model->get_note(), "read grade.ccc again") << "nothing had to be replaced any more";
}

TEST_F(ModelThatFollowsChanges, ReadsNoImageAgainForAnEditedLut) {
    const auto shown = model->get_image();
    write_lut(folder, 0.25);
    follow();
    EXPECT_EQ(model->get_image(), shown);
}

TEST_F(ModelThatFollowsChanges, TakesOverWhatTheModuleTellsItsHost) {
    EXPECT_FALSE(model->follow_changes());
    live_config->use_config(""); // Not by way of the model.
    EXPECT_TRUE(model->follow_changes());
    EXPECT_EQ(model->get_settings(FIRST).input_space, "Tavelion|linear");
    EXPECT_EQ(model->get_settings(FIRST).view, "Tavelion.sRGB");
    EXPECT_THAT(model->get_note(), StartsWith("view 'Screen.Raw' no longer exists, using 'Tavelion.sRGB'"));
    EXPECT_FALSE(model->follow_changes());
}

TEST_F(ModelThatFollowsChanges, ShowsAnEditedImage) {
    write_image(image, 2, 1, [](int, int) { return Rgb{0.125f, 0.25f, 0.5f}; });
    follow();
    EXPECT_EQ(model->get_image()->width, 2);
    EXPECT_EQ(*model->get_image()->at(1, 0), 0.125f);
    folder.write("image.exr", "broken");
    follow();
    EXPECT_EQ(model->get_image()->width, 2);
    EXPECT_THAT(format_all(model->get_errors()), ElementsAre(HasSubstr("image.exr")));
}

} // namespace
