#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "diagnostics/failure.h"
#include "workflow/frame_jobs.h"
#include "workflow/frame_pattern.h"
#include "workflow/frame_range.h"

namespace {

using testing::ElementsAre;
using workflow::FramePattern;
using workflow::parse_frames;

TEST(Frames, AreNumbersRangesAndSteps) {
    EXPECT_THAT(workflow::parse_frames("7"), ElementsAre(7));
    EXPECT_THAT(workflow::parse_frames("1-4"), ElementsAre(1, 2, 3, 4));
    EXPECT_THAT(workflow::parse_frames("1-10x4"), ElementsAre(1, 5, 9));
    EXPECT_THAT(workflow::parse_frames("5,1-3,9"), ElementsAre(5, 1, 2, 3, 9));
}

TEST(Frames, RunBackwardsWhenTheLastIsSmaller) {
    EXPECT_THAT(workflow::parse_frames("10-7"), ElementsAre(10, 9, 8, 7));
    EXPECT_THAT(workflow::parse_frames("10-1x4"), ElementsAre(10, 6, 2));
}

TEST(Frames, MayBeNegative) {
    EXPECT_THAT(workflow::parse_frames("-3"), ElementsAre(-3));
    EXPECT_THAT(workflow::parse_frames("-2-1"), ElementsAre(-2, -1, 0, 1));
    EXPECT_THAT(workflow::parse_frames("-1--3"), ElementsAre(-1, -2, -3));
}

TEST(Frames, AreListedOnceEach) {
    EXPECT_THAT(workflow::parse_frames("1-3,2-4"), ElementsAre(1, 2, 3, 4));
}

TEST(Frames, GiveAJobEachWithThePathsOfBothPatterns) {
    const std::vector<workflow::ImageJob> jobs = workflow::make_frame_jobs("in.##.exr", "out.%d.png", "9-10");
    ASSERT_EQ(jobs.size(), 2u);
    EXPECT_EQ(jobs[0].input, "in.09.exr");
    EXPECT_EQ(jobs[0].output, "out.9.png");
    EXPECT_EQ(jobs[1].input, "in.10.exr");
    EXPECT_EQ(jobs[1].output, "out.10.png");
}

TEST(Frames, RefuseWhatIsNoRange) {
    for (const char* text :
         {"", "a", "1-", "1-3x", "1-3x0", "1-3x-1", "1,,2", "1 - 3", "1-3,", "99999999999"})
        EXPECT_THROW(workflow::parse_frames(text), diagnostics::Failure) << "'" << text << "'";
}

TEST(Frames, RefuseMoreThanAMillion) {
    EXPECT_EQ(workflow::parse_frames("1-1000000").size(), 1000000u);
    EXPECT_THROW(workflow::parse_frames("1-1000001"), diagnostics::Failure);
    EXPECT_THROW(workflow::parse_frames("-2147483648-2147483647"), diagnostics::Failure);
}

TEST(FramePatterns, TakeThePrintfPlace) {
    EXPECT_EQ(workflow::FramePattern("a/shot.%04d.exr").get_path(7), "a/shot.0007.exr");
    EXPECT_EQ(workflow::FramePattern("shot.%04d.exr").get_path(12345), "shot.12345.exr");
    EXPECT_EQ(workflow::FramePattern("shot.%d.exr").get_path(7), "shot.7.exr");
    EXPECT_EQ(workflow::FramePattern("shot.%4d.exr").get_path(7), "shot.   7.exr");
}

TEST(FramePatterns, TakeOneDigitForEachHash) {
    EXPECT_EQ(workflow::FramePattern("shot.####.exr").get_path(7), "shot.0007.exr");
    EXPECT_EQ(workflow::FramePattern("shot.#.exr").get_path(123), "shot.123.exr");
}

TEST(FramePatterns, KeepTheSignInFrontOfTheZeros) {
    EXPECT_EQ(workflow::FramePattern("shot.####.exr").get_path(-7), "shot.-007.exr");
    EXPECT_EQ(workflow::FramePattern("shot.%04d.exr").get_path(-7), "shot.-007.exr");
}

TEST(FramePatterns, TakeTheLastPlaceOfTheFileName) {
    EXPECT_EQ(workflow::FramePattern("v##/shot.##.exr").get_path(3), "v##/shot.03.exr");
    EXPECT_EQ(workflow::FramePattern("take%02d_shot.%02d.exr").get_path(3), "take%02d_shot.03.exr");
}

TEST(FramePatterns, AreNotTheNamesOfSingleFiles) {
    for (const char* name :
         {"shot.exr", "100%.exr", "v##/shot.exr", "%s.exr", "shot.%.exr", "a%04x.exr", ""}) {
        EXPECT_FALSE(workflow::FramePattern(name).is_pattern()) << name;
        EXPECT_EQ(workflow::FramePattern(name).get_path(3), name);
    }
}

} // namespace
