#include "colorio/color_io_manager.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/of/of_enum.h"
#include "tests/colorio/custom_space_fixture.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

TEST_F(CustomSpaces, OfADamagedCdlAreReportedAndPassedOver) {
    const std::string damaged = write_file("damaged.cc", "<ColorCorrection><SOPNode>");
    const std::string lut = write_lut("two.spi1d", 2);
    edit({space_record("bad", "", damaged), space_record("good", lut)});
    EXPECT_THAT(take_log(),
                ElementsAre(error("Color Management: custom color space 'bad' has errors and was ignored.\n"),
                            OcioExceptionAt(LOG_ERROR)));
    EXPECT_THAT(spaces(), ElementsAre("sRGB", "Cineon", "linear", "good"));
    EXPECT_THAT(views(), Not(Contains("Tavelion.bad")));
}

TEST_F(CustomSpaces, OfADamagedCdlBesideALutAreReportedInOtherWords) {
    const std::string damaged = write_file("damaged.cc", "<ColorCorrection><SOPNode>");
    const std::string lut = write_lut("two.spi1d", 2);
    edit({space_record("bad", lut, damaged), space_record("good", lut)});
    EXPECT_THAT(
        take_log(),
        ElementsAre(error("Color Management: the custom color space 'bad' has errors and was ignored.\n"),
                    OcioExceptionAt(LOG_ERROR)));
    EXPECT_THAT(spaces(), ElementsAre("sRGB", "Cineon", "linear", "good"));
}

TEST_F(CustomSpaces, OfAnUnknownIdAreReported) {
    const std::string file = write_file("grades.ccc", collection_text(correction_text("first", "2")));
    edit({space_record("bad", "", file, "no such id")});
    EXPECT_THAT(take_log(),
                ElementsAre(error("Color Management: custom color space 'bad' has errors and was ignored.\n"),
                            OcioExceptionAt(LOG_ERROR)));
}

TEST_F(CustomSpaces, OfACollectionThatRepeatsAnIdAreReportedInTheLibrarysWordsAndNotMade) {
    const std::string collection =
        collection_text(correction_text("same", "2") + correction_text("same", "4"));
    const std::string file = write_file("grades.ccc", collection);
    edit({space_record("by id", "", file, "same"), space_record("without id", "", file),
          space_record("with lut", write_lut("two.spi1d", 2), file, "same")});
    EXPECT_THAT(
        take_log(),
        ElementsAre(error("Color Management: custom color space 'by id' has errors and was ignored.\n"),
                    OcioExceptionAt(LOG_ERROR),
                    error("Color Management: custom color space 'without id' has errors and was "
                          "ignored.\n"),
                    OcioExceptionAt(LOG_ERROR),
                    error("Color Management: the custom color space 'with lut' has errors and was "
                          "ignored.\n"),
                    OcioExceptionAt(LOG_ERROR)));
    EXPECT_THAT(spaces(), ElementsAre("sRGB", "Cineon", "linear"));
    EXPECT_THAT(views(), ElementsAre("Tavelion.sRGB", "Tavelion.Cineon", "Tavelion.linear"));
}

TEST_F(CustomSpaces, OfADamagedCdlAreReadAgainOnceItIsMended) {
    const std::string file = write_file("grade.cc", "<ColorCorrection><SOPNode>");
    edit({space_record("grade", "", file)});
    write_file("grade.cc", correction_text("x", "2"));
    take_log();
    edit({space_record("grade", "", file)});
    EXPECT_THAT(take_log(), IsEmpty());
    EXPECT_FLOAT_EQ(convert_gray("linear", "grade", 0.25f), 0.5f);
}

TEST_F(CustomSpaces, OfADamagedLutAreMadeAndFailWhenTheyAreConverted) {
    edit({space_record("bad", write_file("bad.spi1d", "no table"))});
    EXPECT_THAT(spaces(), Contains("bad"));
    take_log();
    EXPECT_FALSE(converter->configure("linear", "bad"));
    EXPECT_THAT(
        take_log(),
        ElementsAre(error("Color Management: failed to configure the color converter from 'linear' to "
                          "'bad'.\n"),
                    OcioExceptionAt(LOG_ERROR)));
}

TEST_F(CustomSpaces, OfNamesThatTheColorLibraryMightRefuseLeaveTheOthersAlone) {
    const std::string lut = write_lut("two.spi1d", 2);
    edit({space_record("", lut), space_record("50% gray", lut), space_record("good", lut)});
    EXPECT_THAT(spaces(), Contains("good"));
    EXPECT_FLOAT_EQ(convert_gray("linear", "good", 0.25f), 0.5f);
}

TEST_F(CustomSpaces, OfNumbersThatNoDepthOrAllocationHasLeaveTheOthersAlone) {
    const std::string lut = write_lut("two.spi1d", 2);
    SpaceDef odd = space_record("odd", lut);
    odd.bit_depth = 0xFFFFFFFFu;
    odd.allocation = 77;
    edit({odd, space_record("good", lut)});
    EXPECT_THAT(spaces(), Contains("good"));
    EXPECT_FLOAT_EQ(convert_gray("linear", "good", 0.25f), 0.5f);
}

} // namespace
