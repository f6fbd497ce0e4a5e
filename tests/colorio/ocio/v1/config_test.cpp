#include "colorio/ocio/config.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>

#include "tests/colorio/ocio/conversion_check_fixture.h"

namespace {

using namespace conversion_check;
using test_configs::ConfigText;
using test_configs::load;
using test_configs::refusal_of;
using testing::HasSubstr;

TEST(ConfigOfV1, NewerVersionsAreRefusedAndNotMisread) {
    const TempDir folder;
    ConfigText text;
    for (const char* version : {"2", "2.1", "3"}) {
        text.version = version;
        EXPECT_THAT(refusal_of([&] { load(folder, text.str()); }),
                    HasSubstr("needs a newer OpenColorIO than 1.1"))
            << version;
    }
}

TEST(ConfigOfV1, DeepTextNeverReachesTheParser) {
    const TempDir folder;
    const std::string start = "ocio_profile_version: 1\nx: ";
    std::string blocks;
    for (int i = 0; i < 600; ++i)
        blocks += "- ";
    std::string indented;
    for (int i = 0; i < 600; ++i)
        indented += std::string(static_cast<std::size_t>(i), ' ') + "a:\n";
    for (const std::string& deep :
         {std::string(600, '['), std::string(600, '{'), "\n" + blocks, "\n" + indented})
        EXPECT_THAT(refusal_of([&] { load(folder, start + deep); }), HasSubstr("is nested too deeply"));
}

TEST(ConfigOfV1, WideTextIsNotDeep) {
    const TempDir folder;
    ConfigText text;
    text.settings =
        "description: \"" + std::string(400, '-') + std::string(300, '[') + "\"\nluma: [0.2, 0.7, 0.1]\n";
    for (int i = 0; i < 1000; ++i)
        text.spaces += "  - !<ColorSpace>\n    name: s" + std::to_string(i) +
                       "\n    allocationvars: [0, 1]\n    family: for [0, 1)\n    description: |\n      "
                       "----------------------------------\n";
    EXPECT_EQ(refusal_of([&] { load(folder, text.str()); }), "nothing thrown");
}

TEST_F(ConversionCheck, TheLongestAcceptedChainIsFollowedToItsEnd) {
    chain(254);
    std::array<float, 4> pixel{0, 0, 0, 1};
    ocio::get_processor(config_, "s0", "raw")->apply_rgba(pixel.data());
    EXPECT_FLOAT_EQ(pixel[0], 0.1f);
}

} // namespace
