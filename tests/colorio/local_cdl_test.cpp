#include "colorio/color_io_manager.h"

#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/colorio/converter_fixture.h"
#include "tests/colorio/custom_space_files.h"

namespace {

using testing::IsEmpty;
using testing::SizeIs;

using CdlDef = ColorIOManager::ColorDecisionListDef;

/// A list of "warm" (slope 2) and "cool" (slope 8), and local CDLs on top.
class LocalCdl : public ConverterTest {
protected:
    void SetUp() override {
        ConverterTest::SetUp();
        use_cdls({cdl_record("warm", {{2, 2, 2}}), cdl_record("cool", {{8, 8, 8}})});
    }

    void add(const char* name, float slope) {
        EXPECT_TRUE(ColorIOManager::get_instance()->add_local_CDL(cdl_record(name, {{slope, slope, slope}})));
    }
    /// What the CDL of that name makes of 0.125.
    float grade(const char* name) {
        EXPECT_TRUE(converter->configure_CDL("No CDL", name)) << name;
        return convert(0.125f, 0.125f, 0.125f)[0];
    }
};

TEST_F(LocalCdl, GivesWayToTheListedOneWhenAnotherIsAdded) {
    add("warm", 4);
    EXPECT_EQ(grade("warm"), 0.5f);
    add("input_local_CDL", 16);
    EXPECT_EQ(grade("warm"), 0.25f);
    EXPECT_EQ(grade("input_local_CDL"), 2.0f);
}

TEST_F(LocalCdl, StaysWhileItIsAddedAgain) {
    add("warm", 4);
    add("warm", 4);
    EXPECT_EQ(grade("warm"), 0.5f);
    add("warm", 6);
    EXPECT_EQ(grade("warm"), 0.75f);
}

TEST_F(LocalCdl, TakesThePlaceOfAListedOneOfOtherCaseUntilAnotherIsAdded) {
    add("WARM", 4);
    EXPECT_EQ(grade("warm"), 0.5f);
    add("cool", 16);
    EXPECT_EQ(grade("warm"), 0.25f);
}

TEST_F(LocalCdl, OfTheLastNameIsKeptWithEarlierOnes) {
    add("input_local_CDL", 4);
    add("output_local_CDL", 16);
    EXPECT_EQ(grade("input_local_CDL"), 0.5f);
    EXPECT_EQ(grade("output_local_CDL"), 2.0f);
}

TEST_F(LocalCdl, HasADamagedListedFileTriedAgain) {
    CdlDef damaged = cdl_record("damaged", {});
    damaged.file = write_file("damaged.cc", "<ColorCorrection>").c_str();
    use_cdls({damaged});
    take_log();
    add("input_local_CDL", 4);
    EXPECT_THAT(take_log(), SizeIs(2)) << "the message and the library's words, as when the list was set";
    EXPECT_EQ(grade("input_local_CDL"), 0.5f);
}

TEST_F(LocalCdl, HasAListedFileThatIsGoneReplacedByTheRecordsNumbers) {
    CdlDef filed = cdl_record("filed", {{4, 4, 4}});
    const std::string path = write_file("filed.cc", correction_text("filed", "2"));
    filed.file = path.c_str();
    use_cdls({filed});
    EXPECT_EQ(grade("filed"), 0.25f);
    std::filesystem::remove(path);
    add("input_local_CDL", 16);
    EXPECT_EQ(grade("filed"), 0.5f);
    EXPECT_THAT(take_log(), IsEmpty());
}

} // namespace
