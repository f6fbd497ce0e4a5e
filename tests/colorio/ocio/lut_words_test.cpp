#include "colorio/ocio/lut_words.h"

#include <gtest/gtest.h>

#include "tests/colorio/ocio/test_configs.h"

namespace {

using test_configs::refusal_of;

class LutWords : public testing::Test {
protected:
    bool is_readable(const std::string& text) {
        const std::string path = folder_.write("table.lut", text);
        return refusal_of([&] { ocio::require_readable_lut(path); }) == "nothing thrown";
    }

    TempDir folder_;
};

const std::string FITTING(63, '0');
const std::string OVERLONG(64, '0');

TEST_F(LutWords, OfADomainLineHaveALimit) {
    EXPECT_TRUE(is_readable("Version 1\nFrom " + FITTING + " 1.0\n"));
    EXPECT_FALSE(is_readable("Version 1\nFrom " + OVERLONG + " 1.0\n"));
    EXPECT_FALSE(is_readable("Version 1\nFrom 0.0 " + OVERLONG));
    EXPECT_FALSE(is_readable("  from 0.0 " + OVERLONG + "\n"));
}

TEST_F(LutWords, OfATableInBracesHaveALimit) {
    EXPECT_TRUE(is_readable("{\n" + FITTING + " " + FITTING + " 1\n}\n"));
    EXPECT_FALSE(is_readable("{\n0 " + OVERLONG + " 1\n}\n"));
    EXPECT_FALSE(is_readable("{ \n\n\n" + OVERLONG + "\n}\n"));
}

TEST_F(LutWords, OfACubeHaveALimit) {
    EXPECT_TRUE(is_readable("SPILUT 1.0\n3 3\n2 2 2\n0 0 0 " + FITTING + " 0 0\n"));
    EXPECT_FALSE(is_readable("SPILUT 1.0\n3 3\n2 2 2\n0 0 0 " + OVERLONG + " 0 0\n"));
    EXPECT_FALSE(is_readable("spilut 1.0\n3 3\n2 2 2\n0 0 0 0 0 " + OVERLONG));
}

TEST_F(LutWords, OfATableHeaderHaveATighterLimit) {
    EXPECT_TRUE(is_readable("LUT: 1 256 " + std::string(15, 'f') + "\n0\n"));
    EXPECT_FALSE(is_readable("lut: 1 256 " + std::string(16, 'f') + "\n0\n"));
}

TEST_F(LutWords, MayBeLongWhereNoReaderCopiesThem) {
    EXPECT_TRUE(is_readable("TITLE \"" + std::string(500, 'x') + "\"\nLUT_3D_SIZE 2\n0 0 0\n"));
    EXPECT_TRUE(is_readable("# " + OVERLONG + "\nVersion 1\nFrom 0.0 1.0\n{\n0\n1\n}\n"));
    EXPECT_TRUE(is_readable("<ProcessList id=\"urn:uuid:" + OVERLONG + "\">" + OVERLONG + "</ProcessList>"));
}

TEST_F(LutWords, AreFoundBehindAnyAmountOfText) {
    std::string table = "{\n";
    for (int i = 0; i < 20000; ++i)
        table += "0.5\n";
    EXPECT_TRUE(is_readable(table));
    EXPECT_FALSE(is_readable(table + OVERLONG));
}

TEST_F(LutWords, AnEditedFileIsJudgedAgain) {
    EXPECT_FALSE(is_readable("{\n" + OVERLONG + "\n"));
    EXPECT_TRUE(is_readable("{\n" + FITTING + "\n"));
    EXPECT_FALSE(is_readable("{\n" + OVERLONG + "\n"));
}

TEST_F(LutWords, AMissingFileIsLeftToTheLibrary) {
    EXPECT_NO_THROW(ocio::require_readable_lut(folder_.file("missing.spi1d")));
}

TEST_F(LutWords, AFolderIsNoTable) {
    EXPECT_EQ(refusal_of([&] { ocio::require_readable_lut(folder_.get_path()); }),
              "cannot read '" + folder_.get_path() + "': it exists and is not a regular file");
}

} // namespace
