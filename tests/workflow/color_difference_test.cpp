#include "workflow/color_difference.h"

#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::ElementsAre;
using workflow::ColorDifference;
using workflow::compare_colors;

constexpr float INFINITE = std::numeric_limits<float>::infinity();
constexpr float NOT_A_NUMBER = std::numeric_limits<float>::quiet_NaN();

TEST(DifferenceOfColors, IsTheLargestAndTheMeanWithoutAlpha) {
    const ColorDifference difference = compare_colors(
        "two", {1, 2, 3, 0, 4, 5, 6, 0}, {0, 0, 0, 9, 0, 0.25f, 0, 9}, {0, 0, 0, 0, 0, -0.5f, 0.5f, 0});
    EXPECT_EQ(difference.points, 2u);
    EXPECT_EQ(difference.largest, 0.75);
    EXPECT_DOUBLE_EQ(difference.mean, 1.25 / 6);
    EXPECT_EQ(difference.position, 1u);
    EXPECT_THAT(difference.at, ElementsAre(4, 5, 6));
    EXPECT_THAT(difference.expected, ElementsAre(0, 0.25f, 0));
    EXPECT_THAT(difference.actual, ElementsAre(0, -0.5f, 0.5f));
    EXPECT_EQ(describe_incomparable(difference), "");
}

TEST(DifferenceOfColors, CountsWhatIsFiniteInOneAlone) {
    std::vector<float> shown;
    const std::vector<float> inputs(12, 0.0f);
    const ColorDifference difference = compare_colors(
        "three", inputs, {INFINITE, NOT_A_NUMBER, 1, 1, NOT_A_NUMBER, INFINITE, 0, 1, 0, 0, 0, 1},
        {INFINITE, NOT_A_NUMBER, 0.5f, 1, 0, -INFINITE, 0, 1, 0, 0, 0, 1}, &shown);
    EXPECT_EQ(difference.incomparable, 1u) << "the second";
    EXPECT_EQ(describe_incomparable(difference), "1 color is finite in only one of the two");
    EXPECT_EQ(difference.largest, 0.5);
    EXPECT_THAT(shown, ElementsAre(0, 0, 0.5f, 1, 0, 0, 0, 1, 0, 0, 0, 1));
}

TEST(DifferenceOfColors, OfNoneIsZero) {
    const ColorDifference difference = compare_colors("none", {}, {}, {});
    EXPECT_EQ(difference.points, 0u);
    EXPECT_EQ(difference.mean, 0);
}

} // namespace
