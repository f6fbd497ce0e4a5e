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

TEST_F(FormatCategories, StartAsNineBuiltInRowsInOrder) {
    EXPECT_EQ(detection.get_categories_count(), 9u);
    EXPECT_THAT(formats(),
                ElementsAre("Open EXR", "Jpeg", "Bitmap", "Targa", "Png", "Tiff", "Tx", "HDR", "default"));
    EXPECT_FALSE(detection.is_file_config());
}

TEST_F(FormatCategories, CarryTheirExtensionsAsShownToPeople) {
    EXPECT_EQ(extensions("Open EXR"), "exr, sxr");
    EXPECT_EQ(extensions("Jpeg"), "jpg, jpeg");
    EXPECT_EQ(extensions("Bitmap"), "bmp");
    EXPECT_EQ(extensions("Targa"), "tga");
    EXPECT_EQ(extensions("Png"), "png");
    EXPECT_EQ(extensions("Tiff"), "tif, tiff");
    EXPECT_EQ(extensions("Tx"), "tx, tex");
    EXPECT_EQ(extensions("HDR"), "hdr");
    EXPECT_EQ(extensions("default"), "Other");
}

TEST_F(FormatCategories, CarryFullColorSpaceNames) {
    for (const char* linear : {"Open EXR", "Tx", "HDR"})
        EXPECT_EQ(space(linear), "Tavelion|linear") << linear;
    for (const char* display : {"Jpeg", "Bitmap", "Targa", "Png", "Tiff", "default"})
        EXPECT_EQ(space(display), "Tavelion|sRGB") << display;
}

TEST_F(FormatCategories, AppendTheNineBuiltInRowsAgainWhenAsked) {
    detection.init_default_color_spaces();
    EXPECT_EQ(detection.get_categories_count(), 18u);
    EXPECT_EQ(str(detection.get_file_format(8)), "default");
    EXPECT_EQ(str(detection.get_file_format(9)), "Open EXR");
    EXPECT_EQ(str(detection.get_file_format(17)), "default");
}

TEST_F(FormatCategories, TellTheirDataByPosition) {
    EXPECT_EQ(str(detection.get_extensions(0)), "exr, sxr");
    EXPECT_EQ(str(detection.get_color_space(0)), "Tavelion|linear");
    EXPECT_EQ(str(detection.get_extensions(8)), "Other");
    EXPECT_EQ(str(detection.get_color_space(8)), "Tavelion|sRGB");
}

TEST_F(FormatCategories, OfOneNameTellTheirOwnDataByPosition) {
    detection.add_file_format("Png", "apng", "Tavelion|Cineon");
    EXPECT_EQ(str(detection.get_extensions(8)), "apng");
    EXPECT_EQ(str(detection.get_color_space(8)), "Tavelion|Cineon");
    EXPECT_EQ(extensions("Png"), "png") << "by name the first row answers";
}

TEST_F(FormatCategories, AreEmptyPastTheEnd) {
    EXPECT_EQ(str(detection.get_file_format(8)), "default");
    for (const unsigned int index : {9u, NOT_FOUND}) {
        EXPECT_EQ(str(detection.get_file_format(index)), "");
        EXPECT_EQ(str(detection.get_extensions(index)), "");
        EXPECT_EQ(str(detection.get_color_space(index)), "");
    }
    EXPECT_THAT(take_log(), IsEmpty());
}

// Look-up by format

TEST_F(FormatCategories, ReportAnUnknownFormatAndAnswerBuiltInSrgb) {
    EXPECT_EQ(space("Cineon"), "Tavelion|sRGB");
    EXPECT_THAT(take_log(), ElementsAre(error("Can't get color space from category 'Cineon' because this "
                                              "category doesn't exist.\n")));
}

TEST_F(FormatCategories, ReportAnUnknownFormatAndAnswerNoExtensions) {
    EXPECT_EQ(extensions("Cineon"), "");
    EXPECT_THAT(take_log(), ElementsAre(error("Can't get extensions from category 'Cineon' because this "
                                              "category doesn't exist.\n")));
}

TEST_F(FormatCategories, AreFoundByTheirExactNameOnly) {
    EXPECT_EQ(extensions("open exr"), "");
    EXPECT_EQ(extensions("Open EXR "), "");
    EXPECT_EQ(space("hdr"), "Tavelion|sRGB");
    EXPECT_EQ(take_log().size(), 3u);
}

TEST_F(FormatCategories, SayNothingToAHandlerThatWantsNoErrors) {
    log.set_level(0);
    EXPECT_EQ(extensions("Cineon"), "");
    EXPECT_EQ(space("Cineon"), "Tavelion|sRGB");
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(FormatCategories, AnswerWithTheFirstOfTwoRowsOfOneName) {
    detection.add_file_format("Png", "apng", "Tavelion|Cineon");
    EXPECT_EQ(extensions("Png"), "png");
    EXPECT_EQ(space("Png"), "Tavelion|sRGB");
}

// Look-up by extension

TEST_F(FormatCategories, AreFoundByExtensionInAnyLetterCase) {
    EXPECT_EQ(lookup("exr"), "Tavelion|linear");
    EXPECT_EQ(lookup("EXR"), "Tavelion|linear");
    EXPECT_EQ(lookup("sXr"), "Tavelion|linear");
    EXPECT_EQ(lookup("tex"), "Tavelion|linear");
    EXPECT_EQ(lookup("hdr"), "Tavelion|linear");
    EXPECT_EQ(lookup("jpeg"), "Tavelion|sRGB");
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(FormatCategories, GiveAnUnlistedExtensionTheDefaultRowsColorSpace) {
    EXPECT_EQ(lookup("psd"), "Tavelion|sRGB");
    EXPECT_EQ(lookup(""), "Tavelion|sRGB");
    detection.set_default_color_space_from_file_format(8, "Cineon");
    EXPECT_EQ(lookup("psd"), "Tavelion|Cineon");
    EXPECT_EQ(lookup(".exr"), "Tavelion|Cineon");
    EXPECT_EQ(lookup("ex"), "Tavelion|Cineon");
    EXPECT_EQ(lookup("exr, sxr"), "Tavelion|Cineon");
}

TEST_F(FormatCategories, DoNotTakeTheDefaultRowsLabelForAnExtension) {
    detection.set_default_color_space_from_file_format(8, "Cineon");
    detection.add_file_format("Other images", "other", "Tavelion|linear");
    EXPECT_EQ(lookup("Other"), "Tavelion|linear");
}

TEST_F(FormatCategories, FallBackToBuiltInSrgbAndReportItWithoutADefaultRow) {
    detection.remove_file_format(8);
    EXPECT_EQ(lookup("psd"), "Tavelion|sRGB");
    EXPECT_THAT(take_log(), ElementsAre(error("Can't get color space from category 'default' because this "
                                              "category doesn't exist.\n")));
    EXPECT_EQ(lookup("exr"), "Tavelion|linear");
    EXPECT_EQ(take_log().size(), 1u) << "the fallback is looked up first in every case";
}

TEST_F(FormatCategories, NeverMatchExtensionsStoredInUpperCase) {
    detection.set_extension_from_file_format(0, "EXR, SXR");
    EXPECT_EQ(lookup("exr"), "Tavelion|sRGB");
    EXPECT_EQ(lookup("EXR"), "Tavelion|sRGB");
    EXPECT_EQ(lookup("sxr"), "Tavelion|sRGB");
}

TEST_F(FormatCategories, LetTheFirstMatchingRowWin) {
    detection.add_file_format("Second EXR", "exr", "Tavelion|Cineon");
    EXPECT_EQ(lookup("exr"), "Tavelion|linear");
}

TEST_F(FormatCategories, LetALaterRowOverrideAMatchThatEqualsTheFallBack) {
    detection.add_file_format("Deep Png", "png", "Film|log");
    EXPECT_EQ(lookup("png"), "Film|log");
}

TEST_F(FormatCategories, LetNoRowOverrideAMatchThatDiffersFromTheFallBack) {
    detection.add_file_format("Deep Png", "png", "Film|log");
    detection.add_file_format("Deeper Png", "png", "Film|linear");
    EXPECT_EQ(lookup("png"), "Film|log");
}

TEST_F(FormatCategories, LoseTheSpacesOfEveryRowThatALookUpPasses) {
    EXPECT_EQ(lookup("psd"), "Tavelion|sRGB");
    EXPECT_EQ(extensions("Open EXR"), "exr,sxr");
    EXPECT_EQ(extensions("Jpeg"), "jpg,jpeg");
    EXPECT_EQ(extensions("Tiff"), "tif,tiff");
    EXPECT_EQ(extensions("Tx"), "tx,tex");
}

TEST_F(FormatCategories, KeepTheSpacesOfRowsBehindTheOneThatALookUpStoppedAt) {
    EXPECT_EQ(lookup("exr"), "Tavelion|linear");
    EXPECT_EQ(extensions("Open EXR"), "exr,sxr");
    EXPECT_EQ(extensions("Jpeg"), "jpg, jpeg");
    EXPECT_EQ(extensions("Tx"), "tx, tex");
}

TEST_F(FormatCategories, MatchWholeExtensionsBetweenCommasWhereverSpacesStand) {
    detection.set_extension_from_file_format(2, " dpx ,  c in,,");
    detection.set_default_color_space_from_file_format(2, "Cineon");
    EXPECT_EQ(lookup("dpx"), "Tavelion|Cineon");
    EXPECT_EQ(lookup("cin"), "Tavelion|Cineon");
    EXPECT_EQ(lookup("c in"), "Tavelion|sRGB") << "spaces are dropped from the list, not from the question";
    EXPECT_EQ(lookup("dp"), "Tavelion|sRGB");
    EXPECT_EQ(extensions("Bitmap"), "dpx,cin,,");
}

TEST_F(FormatCategories, KeepTabsInTheirExtensions) {
    detection.set_extension_from_file_format(0, "exr,\tsxr");
    EXPECT_EQ(lookup("exr"), "Tavelion|linear");
    EXPECT_EQ(lookup("sxr"), "Tavelion|sRGB");
    EXPECT_EQ(extensions("Open EXR"), "exr,\tsxr");
}

// Through the facade

TEST_F(FormatCategories, AnswerTheFacadesQuestions) {
    ColorIO& facade = *ColorIO::get_instance();
    EXPECT_EQ(str(facade.get_default_color_space_from_ext("EXR")), "Tavelion|linear");
    EXPECT_EQ(str(facade.get_default_color_space_from_ext("jpg")), "Tavelion|sRGB");
    EXPECT_EQ(str(facade.get_default_color_space_from_ext("psd")), "Tavelion|sRGB");
}

} // namespace
