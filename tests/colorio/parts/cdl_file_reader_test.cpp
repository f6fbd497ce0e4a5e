#include "colorio/cdl/color_io_cdl_transform.h"

#include <array>

#include <gtest/gtest.h>

#include "tests/colorio/custom_space_files.h"
#include "tests/colorio/ocio/test_configs.h"
#include "tests/support/temp_dir.h"

namespace {

std::array<float, 3> slope_of(const ocio::CDLTransformRcPtr& transform) {
    std::array<float, 3> slope{};
    ocio::get_slope(transform, slope.data());
    return slope;
}

class CDLFileReaders : public testing::Test {
protected:
    TempDir folder;
    CDLFileReader reader{RepeatedIds::FIRST_COUNTS};
};

TEST_F(CDLFileReaders, FindACorrectionByItsId) {
    const std::string path =
        folder.write("shots.ccc", collection_text(correction_text("a", "2") + correction_text("b", "3")));
    EXPECT_TRUE(reader.exists(path.c_str()));
    EXPECT_EQ(slope_of(reader.read(path.c_str(), "b"))[0], 3);
    EXPECT_EQ(slope_of(reader.read(path.c_str(), "a"))[0], 2);
    EXPECT_NE(test_configs::refusal_of([&] { reader.read(path.c_str(), "c"); }), "nothing thrown");
}

TEST_F(CDLFileReaders, ReadAFileOnce) {
    const std::string path = folder.write("shots.ccc", collection_text(correction_text("a", "2")));
    EXPECT_EQ(slope_of(reader.read(path.c_str(), "a"))[0], 2);
    folder.write("shots.ccc", collection_text(correction_text("a", "5")));
    EXPECT_EQ(slope_of(reader.read(path.c_str(), "a"))[0], 2);
    EXPECT_FALSE(reader.exists(folder.file("none.ccc").c_str()));
    folder.write("none.ccc", "");
    EXPECT_FALSE(reader.exists(folder.file("none.ccc").c_str())) << "asked only once";
}

TEST_F(CDLFileReaders, TakeTheFirstOfARepeatedIdOrRefuseTheFile) {
    const std::string path =
        folder.write("twice.ccc", collection_text(correction_text("a", "2") + correction_text("a", "3")));
    EXPECT_EQ(slope_of(reader.read(path.c_str(), "a"))[0], 2);
    CDLFileReader strict(RepeatedIds::REFUSED);
    EXPECT_NE(test_configs::refusal_of([&] { strict.read(path.c_str(), "a"); }), "nothing thrown");
}

} // namespace
