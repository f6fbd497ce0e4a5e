#include "colorio/ocio/look_list.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// "+name" or "-name" for every step.
std::vector<std::string> written(const std::vector<ocio::LookStep>& steps) {
    std::vector<std::string> words;
    for (const ocio::LookStep& step : steps)
        words.push_back((step.inverse ? "-" : "+") + step.name);
    return words;
}

TEST(LookList, StepsAreSeparatedByCommasOrColons) {
    EXPECT_THAT(written(ocio::all_look_steps("a, b:c")), ElementsAre("+a", "+b", "+c"));
}

TEST(LookList, AMinusMeansTheInverse) {
    EXPECT_THAT(written(ocio::all_look_steps(" +a , -b,- c")), ElementsAre("+a", "-b", "-c"));
}

TEST(LookList, NamesMayHoldBlanksAndSigns) {
    EXPECT_THAT(written(ocio::all_look_steps("day-for-night look")), ElementsAre("+day-for-night look"));
}

TEST(LookList, BarsSeparateAlternatives) {
    const auto alternatives = ocio::look_alternatives("a, b | -c |");
    ASSERT_EQ(alternatives.size(), 3u);
    EXPECT_THAT(written(alternatives[0]), ElementsAre("+a", "+b"));
    EXPECT_THAT(written(alternatives[1]), ElementsAre("-c"));
    EXPECT_THAT(alternatives[2], IsEmpty());
    EXPECT_THAT(written(ocio::all_look_steps("a, b | -c |")), ElementsAre("+a", "+b", "-c"));
}

TEST(LookList, AnEmptyListIsOneEmptyAlternative) {
    EXPECT_THAT(ocio::all_look_steps(""), IsEmpty());
    EXPECT_EQ(ocio::look_alternatives("").size(), 1u);
}

} // namespace
