#include "viewer/view_model.h"

#include <filesystem>

#include "colorio/color_io_manager.h"
#include "tests/colorio/library_differences.h"
#include "tests/viewer/change_fixture.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

TEST_F(ModelThatFollowsChanges, KeepsTheLastGoodColorsWhileALutIsBroken) {
    model->set_view(FIRST, "Screen.Shown");
    EXPECT_FLOAT_EQ(shown_white(), 0.5);
    folder.write("luts/shown.spi1d", "Version 1\nFrom 0 2\nLength 2\nno values");
    follow();
    EXPECT_FLOAT_EQ(shown_white(), 0.5);
    ASSERT_EQ(model->get_errors().size(), 1u);
    EXPECT_THAT(format_with_hint(model->get_errors()[0]), HasSubstr("shown.spi1d"));
    EXPECT_EQ(model->get_settings(FIRST).view, "Screen.Shown");

    write_lut(folder, 0.25);
    follow();
    EXPECT_FLOAT_EQ(shown_white(), 0.25);
    EXPECT_THAT(format_all(model->get_errors()), IsEmpty());
}

TEST_F(ModelThatFollowsChanges, KeepsTheLastGoodStateWhileTheConfigurationIsBroken) {
    const std::string good = folder.read("test.ocio");
    for (const std::string& broken :
         {std::string("ocio_profile_version: 1\nroles: ["), std::string(), good.substr(0, good.size() / 2)}) {
        model->set_view(FIRST, "Screen.Shown");
        const auto chain = model->get_conversion(FIRST);
        folder.write("test.ocio", broken);
        follow();
        ASSERT_EQ(model->get_errors().size(), 1u) << broken;
        EXPECT_THAT(format_with_hint(model->get_errors()[0]), HasSubstr("test.ocio"));
        EXPECT_THAT(format_with_hint(model->get_errors()[0]), HasSubstr("last valid version"));
        EXPECT_EQ(live_config->get_config_name(), "test.ocio");
        EXPECT_THAT(live_config->get_views(), ElementsAre("Screen.Raw", "Screen.Shown"));
        EXPECT_EQ(model->get_conversion(FIRST), chain) << "the same object";
        model->set_view(FIRST, "Screen.Raw");
        EXPECT_FLOAT_EQ(shown_white(), 1) << "other views can still be chosen";

        folder.write("test.ocio", good);
        follow();
        EXPECT_THAT(format_all(model->get_errors()), IsEmpty());
    }
}

TEST_F(ModelThatFollowsChanges, KeepsTheLastGoodStateWhenTheConfigurationIsRemoved) {
    model->set_view(FIRST, "Screen.Shown");
    std::filesystem::remove(config);
    follow();
    EXPECT_THAT(format_all(model->get_errors()), ElementsAre(HasSubstr("no such file")));
    EXPECT_FLOAT_EQ(shown_white(), 0.5);
}

TEST_F(ModelThatFollowsChanges, ShowsAnEditedCdlAndKeepsItWhileItIsBroken) {
    model->use_cdl_library(folder.write("grade.ccc", make_library("0.5 0.5 0.5")));
    model->set_cdl("grade");
    EXPECT_FLOAT_EQ(shown_white(), 0.5);
    folder.write("grade.ccc", make_library("0.25 0.25 0.25"));
    follow();
    EXPECT_EQ(model->get_settings(FIRST).cdl, "grade");
    EXPECT_FLOAT_EQ(shown_white(), 0.25);
    folder.write("grade.ccc", "<ColorCorrectionCollection><Color");
    follow();
    EXPECT_FLOAT_EQ(shown_white(), 0.25);
    EXPECT_THAT(format_all(model->get_errors()), ElementsAre(HasSubstr("grade.ccc")));
    EXPECT_EQ(model->get_settings(FIRST).cdl, "grade");
    write_lut(folder, 0.75);
    follow();
    model->set_view(FIRST, "Screen.Shown");
    EXPECT_FLOAT_EQ(shown_white(), 0.1875) << "the configuration is read again though the CDL cannot be";
    EXPECT_THAT(format_all(model->get_errors()), ElementsAre(HasSubstr("grade.ccc")));
}

TEST_F(ModelThatFollowsChanges, TellsOfEachSourceUntilThatOneIsWholeAgain) {
    const std::string library = folder.write("grade.ccc", make_library("0.5 0.5 0.5"));
    const std::string good_config = folder.read("test.ocio");
    model->use_cdl_library(library);
    folder.write("grade.ccc", "garbage");
    follow();
    folder.write("test.ocio", "garbage");
    follow();
    EXPECT_THAT(format_all(model->get_errors()), ElementsAre(HasSubstr("test.ocio"), HasSubstr("grade.ccc")));
    model->use_config("");
    EXPECT_THAT(format_all(model->get_errors()), ElementsAre(HasSubstr("grade.ccc")))
        << "another configuration mends no CDL";
    model->use_cdl_library(folder.write("other.ccc", make_library("0.25 0.25 0.25")));
    EXPECT_THAT(format_all(model->get_errors()), IsEmpty());

    folder.write("test.ocio", good_config);
    model->use_config(config);
    folder.write("test.ocio", "garbage");
    follow();
    model->use_cdl_library(folder.write("grade.ccc", make_library("0.5 0.5 0.5")));
    EXPECT_THAT(format_all(model->get_errors()), ElementsAre(HasSubstr("test.ocio")))
        << "nor the other way round";
}

} // namespace
