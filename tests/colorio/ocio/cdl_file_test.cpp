#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>

#include "tests/colorio/ocio/test_configs.h"

namespace {

using test_configs::refusal_of;
using testing::HasSubstr;
using testing::StartsWith;

std::string correction(const std::string& attributes, const std::string& slope,
                       const std::string& saturation_node = "SatNode") {
    return "<ColorCorrection" + attributes + "><SOPNode><Slope>" + slope +
           "</Slope><Offset>0.25 0.5 0.75</Offset><Power>1 2 3</Power></SOPNode><" + saturation_node +
           "><Saturation>0.5</Saturation></" + saturation_node + "></ColorCorrection>\n";
}

std::string collection(const std::string& content) {
    return "<?xml version=\"1.0\"?>\n<!-- <ColorCorrection> -->\n"
           "<ColorCorrectionCollection xmlns=\"urn:ASC:CDL:v1.2\">\n" +
           content + "</ColorCorrectionCollection>\n";
}

const std::string TWO = collection(correction(" id=\"a\"", "2 2 2") + correction(" id=\"b\"", "4 4 4"));

class CdlFile : public testing::Test {
protected:
    float slope_in(const std::string& path, const char* cccid) {
        float slope[3];
        ocio::get_slope(ocio::create_CDL_transform_from_file(path.c_str(), cccid), slope);
        return slope[0];
    }
    std::string refusal(const std::string& path, const char* cccid = "") {
        return refusal_of([&] { ocio::create_CDL_transform_from_file(path.c_str(), cccid); });
    }

    TempDir folder_;
};

TEST_F(CdlFile, ASingleCorrectionIsReadWithItsId) {
    const std::string path = folder_.write("one.cc", correction(" id=\"shot\"", "1.5 2 2.5"));
    const auto transform = ocio::create_CDL_transform_from_file(path.c_str(), "");
    float values[3];
    EXPECT_STREQ(ocio::get_id(transform), "shot");
    ocio::get_slope(transform, values);
    EXPECT_THAT(values, testing::ElementsAre(1.5f, 2, 2.5f));
    ocio::get_offset(transform, values);
    EXPECT_THAT(values, testing::ElementsAre(0.25f, 0.5f, 0.75f));
    ocio::get_power(transform, values);
    EXPECT_THAT(values, testing::ElementsAre(1, 2, 3));
    EXPECT_EQ(ocio::get_sat(transform), 0.5f);
}

TEST_F(CdlFile, TheIdIsIgnoredForASingleCorrection) {
    const std::string path = folder_.write("one.cc", correction(" id=\"shot\"", "2 2 2"));
    for (const char* cccid : {"shot", "other", "0", "7"})
        EXPECT_EQ(slope_in(path, cccid), 2.0f) << cccid;
}

TEST_F(CdlFile, ACollectionOfOneIsStillACollection) {
    const std::string path = folder_.write("one.ccc", collection(correction(" id=\"a\"", "2 2 2")));
    EXPECT_EQ(slope_in(path, "a"), 2.0f);
    EXPECT_EQ(refusal(path, "other"), "no color correction 'other' among the 1 of '" + path + "'");
}

TEST_F(CdlFile, CollectionsAreAskedByIdOrPositionOrForTheirFirst) {
    const std::string path = folder_.write("two.ccc", TWO);
    EXPECT_EQ(slope_in(path, "a"), 2.0f);
    EXPECT_EQ(slope_in(path, "b"), 4.0f);
    EXPECT_EQ(slope_in(path, "0"), 2.0f);
    EXPECT_EQ(slope_in(path, "1"), 4.0f);
    EXPECT_EQ(slope_in(path, ""), 2.0f);
    for (const char* cccid : {"2", "-1", "1x", "c"})
        EXPECT_EQ(refusal(path, cccid),
                  "no color correction '" + std::string(cccid) + "' among the 2 of '" + path + "'");
}

TEST_F(CdlFile, AnIdThatLooksLikeAPositionComesFirst) {
    const std::string path = folder_.write(
        "two.ccc", collection(correction(" id=\"1\"", "2 2 2") + correction(" id=\"0\"", "4 4 4")));
    EXPECT_EQ(slope_in(path, "1"), 2.0f);
    EXPECT_EQ(slope_in(path, "0"), 4.0f);
}

TEST_F(CdlFile, TheContentDecidesNotTheExtension) {
    EXPECT_EQ(slope_in(folder_.write("collection.cc", TWO), "b"), 4.0f);
    EXPECT_EQ(slope_in(folder_.write("single.ccc", correction("", "2 2 2")), "other"), 2.0f);
    EXPECT_EQ(slope_in(folder_.write("plain", correction("", "2 2 2")), ""), 2.0f);
}

TEST_F(CdlFile, DecisionListsAreCollections) {
    const std::string path = folder_.write(
        "list.cdl", "<ColorDecisionList xmlns=\"urn:ASC:CDL:v1.2\"><ColorDecision>" +
                        correction(" id=\"a\"", "2 2 2") + "</ColorDecision><ColorDecision>" +
                        correction(" id=\"b\"", "4 4 4") + "</ColorDecision></ColorDecisionList>");
    EXPECT_EQ(slope_in(path, "b"), 4.0f);
}

TEST_F(CdlFile, BothSpellingsOfTheSaturationNodeAreRead) {
    const std::string path = folder_.write("sat.cc", correction("", "1 1 1", "SATNode"));
    EXPECT_EQ(ocio::get_sat(ocio::create_CDL_transform_from_file(path.c_str(), "")), 0.5f);
}

TEST_F(CdlFile, EveryReaderGetsACopyOfItsOwn) {
    const std::string path = folder_.write("two.ccc", TWO);
    const auto first = ocio::create_CDL_transform_from_file(path.c_str(), "a");
    const float changed[] = {9, 9, 9};
    ocio::set_slope(first, changed);
    ocio::set_id(first, "changed");
    EXPECT_EQ(slope_in(path, "a"), 2.0f);
    const auto all = ocio::create_CDL_transforms_from_file(path.c_str());
    ASSERT_EQ(all.size(), 2u);
    EXPECT_STREQ(ocio::get_id(all[0]), "a");
}

TEST_F(CdlFile, AllCorrectionsAreReadInFileOrder) {
    const std::string path =
        folder_.write("three.ccc", collection(correction(" id=\"z\"", "2 2 2") + correction("", "4 4 4") +
                                              correction(" id=\"a\"", "8 8 8")));
    const auto all = ocio::create_CDL_transforms_from_file(path.c_str());
    ASSERT_EQ(all.size(), 3u);
    EXPECT_STREQ(ocio::get_id(all[0]), "z");
    EXPECT_STREQ(ocio::get_id(all[1]), "");
    EXPECT_STREQ(ocio::get_id(all[2]), "a");
}

TEST_F(CdlFile, ASingleCorrectionIsAlsoAListOfOne) {
    const std::string path = folder_.write("one.cc", correction("", "2 2 2"));
    EXPECT_EQ(ocio::create_CDL_transforms_from_file(path.c_str()).size(), 1u);
}

TEST_F(CdlFile, DamagedFilesAreRefusedByName) {
    for (const char* content : {"", "no XML", "<ColorCorrection", "<ColorCorrection><SOPNode><Slope>1 1"}) {
        const std::string path = folder_.write("damaged.cc", content);
        EXPECT_THAT(refusal(path), HasSubstr("damaged.cc")) << content;
        EXPECT_THAT(refusal_of([&] { ocio::create_CDL_transforms_from_file(path.c_str()); }),
                    HasSubstr("damaged.cc"));
    }
    EXPECT_THAT(refusal(folder_.file("missing.cc")), HasSubstr("missing.cc"));
}

TEST_F(CdlFile, OverlongWordsNeverReachTheLibrary) {
    const std::string path = folder_.write("hostile.cc", "Version 1\nFrom " + std::string(200, '0') + " 1\n");
    EXPECT_THAT(refusal(path), HasSubstr("contains a word longer than any number"));
}

TEST_F(CdlFile, AFolderIsNoFile) {
    EXPECT_THAT(refusal(folder_.get_path()), HasSubstr("not a regular file"));
}

TEST_F(CdlFile, AMendedFileIsReadAgain) {
    const std::string path = folder_.write("grade.cc", "damaged");
    EXPECT_NE(refusal(path), "nothing thrown");
    folder_.write("grade.cc", correction("", "2 2 2"));
    EXPECT_EQ(slope_in(path, ""), 2.0f);
}

TEST_F(CdlFile, AMendedFileOfTheSameSizeIsReadAgain) {
    std::string damaged = correction("", "2 2 2");
    damaged[0] = '>';
    const std::string path = folder_.write("grade.cc", damaged);
    EXPECT_NE(refusal(path), "nothing thrown");
    folder_.write("grade.cc", correction("", "2 2 2"));
    EXPECT_EQ(slope_in(path, ""), 2.0f);
}

TEST_F(CdlFile, AChangeWithinOneTickOfTheClockIsNoticed) {
    const auto tick = std::filesystem::file_time_type::clock::now() + std::chrono::hours(1);
    std::string damaged = correction("", "2 2 2");
    damaged[0] = '>';
    const std::string path = folder_.write("grade.cc", damaged);
    std::filesystem::last_write_time(path, tick);
    EXPECT_NE(refusal(path), "nothing thrown");
    folder_.write("grade.cc", correction("", "2 2 2"));
    std::filesystem::last_write_time(path, tick);
    EXPECT_EQ(slope_in(path, ""), 2.0f);
}

TEST_F(CdlFile, AFileThatAppearsIsRead) {
    const std::string path = folder_.file("late.cc");
    EXPECT_NE(refusal(path), "nothing thrown");
    folder_.write("late.cc", correction("", "2 2 2"));
    EXPECT_EQ(slope_in(path, ""), 2.0f);
}

TEST_F(CdlFile, AnIdThatIsAddedLaterIsFound) {
    const std::string path = folder_.write("two.ccc", TWO);
    EXPECT_THAT(refusal(path, "c"), StartsWith("no color correction 'c'"));
    folder_.write("two.ccc", collection(correction(" id=\"c\"", "8 8 8")));
    EXPECT_EQ(slope_in(path, "c"), 8.0f);
}

TEST_F(CdlFile, AnOldFileIsRememberedUntilItChanges) {
    const std::string path = folder_.write("two.ccc", TWO);
    const auto long_ago = std::filesystem::file_time_type::clock::now() - std::chrono::hours(1);
    std::filesystem::last_write_time(path, long_ago);
    EXPECT_EQ(slope_in(path, "a"), 2.0f);
    EXPECT_EQ(slope_in(path, "b"), 4.0f);
    folder_.write("two.ccc", collection(correction(" id=\"a\"", "8 8 8")));
    EXPECT_EQ(slope_in(path, "a"), 8.0f);
}

} // namespace
