#include "colorio/color_io_auto_detection.h"

#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "colorio/color_io.h"
#include "colorio/color_io_constants.h"
#include "tests/colorio/format_categories_fixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(FormatCategories, TakeANewRowInFrontOfTheLast) {
    detection.add_file_format("Dpx", "dpx, cin", "Tavelion|Cineon");
    EXPECT_EQ(detection.get_categories_count(), 10u);
    EXPECT_EQ(str(detection.get_file_format(7)), "HDR");
    EXPECT_EQ(str(detection.get_file_format(8)), "Dpx");
    EXPECT_EQ(str(detection.get_file_format(9)), "default");
    EXPECT_EQ(extensions("Dpx"), "dpx, cin");
    EXPECT_EQ(space("Dpx"), "Tavelion|Cineon");
    EXPECT_EQ(extensions("default"), "Other");
    EXPECT_EQ(space("default"), "Tavelion|sRGB");
    EXPECT_EQ(lookup("CIN"), "Tavelion|Cineon");
}

TEST_F(FormatCategories, StoreTheColorSpaceOfANewRowAsGiven) {
    detection.add_file_format("Dpx", "dpx", "Cineon");
    EXPECT_EQ(space("Dpx"), "Cineon");
}

TEST_F(FormatCategories, CloseTheGapOfARemovedRow) {
    detection.remove_file_format(1);
    EXPECT_THAT(formats(), ElementsAre("Open EXR", "Bitmap", "Targa", "Png", "Tiff", "Tx", "HDR", "default"));
    EXPECT_EQ(extensions("Bitmap"), "bmp");
    EXPECT_EQ(extensions("Tx"), "tx, tex");
    EXPECT_EQ(space("Tx"), "Tavelion|linear");
    EXPECT_EQ(extensions("default"), "Other");
}

TEST_F(FormatCategories, LoseTheirLastRowWhenARowPastTheEndIsRemoved) {
    detection.remove_file_format(100);
    EXPECT_THAT(formats(), ElementsAre("Open EXR", "Jpeg", "Bitmap", "Targa", "Png", "Tiff", "Tx", "HDR"));
    detection.remove_file_format(8);
    EXPECT_EQ(detection.get_categories_count(), 7u);
    EXPECT_EQ(str(detection.get_file_format(6)), "Tx");
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(FormatCategories, StayWhenTheNotFoundIndexIsRemoved) {
    detection.remove_file_format(NOT_FOUND);
    EXPECT_EQ(detection.get_categories_count(), 9u);
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(FormatCategories, CanAllBeRemovedAndStayEmptyAfterwards) {
    for (int i = 0; i < 12; ++i)
        detection.remove_file_format(0);
    EXPECT_EQ(detection.get_categories_count(), 0u);
    EXPECT_EQ(str(detection.get_file_format(0)), "");
    EXPECT_EQ(lookup("exr"), "Tavelion|sRGB");
}

TEST_F(FormatCategories, TakeARowWhenTheTableIsEmpty) {
    for (int i = 0; i < 9; ++i)
        detection.remove_file_format(0);
    detection.add_file_format("Dpx", "dpx", "Tavelion|Cineon");
    EXPECT_THAT(formats(), ElementsAre("Dpx"));
    EXPECT_EQ(lookup("dpx"), "Tavelion|Cineon");
}

TEST_F(FormatCategories, TakeANewName) {
    detection.set_file_format(0, "Half floats");
    EXPECT_EQ(str(detection.get_file_format(0)), "Half floats");
    EXPECT_EQ(extensions("Half floats"), "exr, sxr");
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(FormatCategories, WarnWhenARowPastTheEndIsRenamed) {
    detection.set_file_format(9, "Half floats");
    EXPECT_THAT(take_log(), ElementsAre(warning("Can not find the category to rename. \n")));
    detection.set_file_format(NOT_FOUND, "Half floats");
    EXPECT_THAT(take_log(), ElementsAre(warning("Can not find the category to rename. \n")));
    EXPECT_EQ(str(detection.get_file_format(8)), "default");
    log.set_level(LOG_ERROR);
    detection.set_file_format(9, "Half floats");
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(FormatCategories, TakeNewExtensionsAsGiven) {
    detection.set_extension_from_file_format(4, "PNG , apng,  mng");
    EXPECT_EQ(extensions("Png"), "PNG , apng,  mng");
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(FormatCategories, ReportExtensionsForTheNotFoundIndex) {
    detection.set_extension_from_file_format(NOT_FOUND, "png");
    EXPECT_THAT(take_log(),
                ElementsAre(error("Can't set extensions from category: can't find the category.\n")));
}

TEST_F(FormatCategories, TakeANewColorSpaceByItsFullName) {
    detection.set_default_color_space_from_file_format(1, "linear");
    EXPECT_EQ(space("Jpeg"), "Tavelion|linear");
    detection.set_default_color_space_from_file_format(1, "Tavelion|Cineon");
    EXPECT_EQ(space("Jpeg"), "Tavelion|Cineon");
    detection.set_default_color_space_from_file_format(1, "LINEAR");
    EXPECT_EQ(space("Jpeg"), "LINEAR") << "an unknown name is kept as it is";
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(FormatCategories, ReportAColorSpaceForTheNotFoundIndex) {
    detection.set_default_color_space_from_file_format(NOT_FOUND, "linear");
    EXPECT_THAT(take_log(),
                ElementsAre(error("Can't set color space from category: can't find the category.\n")));
}

TEST_F(FormatCategories, MakeTheFacadeWhenAColorSpaceIsSet) {
    forget_facade();
    ASSERT_EQ(ColorIO::s_singleton, nullptr);
    detection.set_default_color_space_from_file_format(1, "linear");
    EXPECT_NE(ColorIO::s_singleton, nullptr);
    EXPECT_EQ(space("Jpeg"), "Tavelion|linear");
}

} // namespace
