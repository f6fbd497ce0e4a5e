#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "workflow/nearest_names.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using workflow::did_you_mean;
using workflow::find_nearest_names;
using workflow::get_edit_distance;

TEST(EditDistance, CountsInsertionsDeletionsReplacementsAndSwaps) {
    EXPECT_EQ(get_edit_distance("linear", "linear"), 0u);
    EXPECT_EQ(get_edit_distance("linear", "linar"), 1u);
    EXPECT_EQ(get_edit_distance("linear", "linnear"), 1u);
    EXPECT_EQ(get_edit_distance("linear", "linaer"), 1u);
    EXPECT_EQ(get_edit_distance("kitten", "sitting"), 3u);
    EXPECT_EQ(get_edit_distance("", "abc"), 3u);
}

TEST(EditDistance, IgnoresCase) {
    EXPECT_EQ(get_edit_distance("SRGB", "sRgb"), 0u);
}

TEST(NearestNames, ComeBestFirstAndThreeAtMost) {
    EXPECT_THAT(workflow::find_nearest_names("ACEScgg", {"ACEScct", "ACEScg", "Raw"}),
                ElementsAre("ACEScg", "ACEScct"));
    EXPECT_THAT(workflow::find_nearest_names("lin", {"lina", "linb", "linc", "lind"}),
                ElementsAre("lina", "linb", "linc"));
}

TEST(NearestNames, AreThoseThatContainTheName) {
    EXPECT_THAT(workflow::find_nearest_names("film", {"Monitor.Film", "Cinema.Video"}),
                ElementsAre("Monitor.Film"));
    EXPECT_THAT(workflow::find_nearest_names("f", {"Monitor.Film"}), IsEmpty())
        << "one letter is in everything";
}

TEST(NearestNames, AreNotMuchWorseThanTheBest) {
    EXPECT_THAT(workflow::find_nearest_names("Monitor.Flim", {"Monitor.Warm", "Monitor.Film"}),
                ElementsAre("Monitor.Film"));
}

TEST(NearestNames, AreNoneWhenNothingIsNear) {
    EXPECT_THAT(workflow::find_nearest_names("zebra", {"linear", "sRGB"}), IsEmpty());
    EXPECT_EQ(workflow::did_you_mean("zebra", {"linear", "sRGB"}), "");
}

TEST(DidYouMean, ReadsAsASentence) {
    EXPECT_EQ(workflow::did_you_mean("ACEScgg", {"ACEScg"}), "did you mean 'ACEScg'?");
    EXPECT_EQ(workflow::did_you_mean("lin", {"lina", "linb"}), "did you mean 'lina' or 'linb'?");
    EXPECT_EQ(workflow::did_you_mean("lin", {"lina", "linb", "linc"}),
              "did you mean 'lina', 'linb' or 'linc'?");
}

} // namespace
