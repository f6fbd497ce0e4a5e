#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "diagnostics/failure.h"
#include "tests/support/temp_dir.h"
#include "workflow/frame_jobs.h"
#include "workflow/frame_pattern.h"
#include "workflow/frame_range.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using workflow::FrameJobs;
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

TEST(Frames, AreWrittenAsTheRangesTheyAreReadFrom) {
    for (const char* text : {"7", "1-4", "1,3", "1-9x2", "3,7-9,20-40x10", "-3--1,5", "1-3,5,8", "1,2000000"})
        EXPECT_EQ(workflow::format_frames(parse_frames(text)), text);
    EXPECT_EQ(workflow::format_frames({1, 2, 3, 5, 7, 9}), "1-3,5-9x2");
    EXPECT_EQ(workflow::format_frames({}), "");
}

TEST(Frames, AreMissedAtTheDistanceThatTheOthersHave) {
    EXPECT_THAT(workflow::find_gaps({1, 2, 5, 6, 8}), ElementsAre(3, 4, 7));
    EXPECT_THAT(workflow::find_gaps({1, 3, 7, 9}), ElementsAre(5));
    EXPECT_THAT(workflow::find_gaps({-4, -2, 2}), ElementsAre(0));
    EXPECT_THAT(workflow::find_gaps({1, 2, 3}), IsEmpty());
    EXPECT_THAT(workflow::find_gaps({7}), IsEmpty());
    EXPECT_THAT(workflow::find_gaps({-2147483647, 0, 1}), IsEmpty()) << "too many to name";
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

TEST(FramePatterns, TakeOneDigitForEachAt) {
    EXPECT_EQ(FramePattern("shot.@@@@.exr").get_path(7), "shot.0007.exr");
    EXPECT_EQ(FramePattern("shot.@.exr").get_path(123), "shot.123.exr");
}

TEST(FramePatterns, TakeDollarFAndItsDigits) {
    EXPECT_EQ(FramePattern("a/shot.$F4.exr").get_path(7), "a/shot.0007.exr");
    EXPECT_EQ(FramePattern("shot.$F.exr").get_path(7), "shot.7.exr");
    EXPECT_EQ(FramePattern("shot$F3").get_path(7), "shot007");
}

TEST(FramePatterns, PreferPercentThenDollarThenHashThenAt) {
    EXPECT_EQ(FramePattern("@@_##_$F2_%02d.exr").get_path(7), "@@_##_$F2_07.exr");
    EXPECT_EQ(FramePattern("$F2_##_@@.exr").get_path(7), "07_##_@@.exr");
    EXPECT_EQ(FramePattern("##_@@.exr").get_path(7), "07_@@.exr");
}

TEST(FramePatterns, KnowTheFrameOfAPath) {
    EXPECT_EQ(FramePattern("a/shot.####.exr").find_frame("a/shot.0012.exr"), 12);
    EXPECT_EQ(FramePattern("shot.%04d.exr").find_frame("shot.12345.exr"), 12345);
    EXPECT_EQ(FramePattern("shot.%04d.exr").find_frame("shot.-012.exr"), -12);
    EXPECT_EQ(FramePattern("shot.%4d.exr").find_frame("shot.  12.exr"), 12);
    for (const char* other : {"shot.012.exr", "shot.00012.exr", "shot..exr", "shot.0x12.exr", "shot.0012.png",
                              "shot.0012.exr.exr", "other.0012.exr", "shot.99999999999.exr", "shot.+012.exr"})
        EXPECT_EQ(FramePattern("shot.%04d.exr").find_frame(other), std::nullopt) << other;
    EXPECT_EQ(FramePattern("shot.exr").find_frame("shot.exr"), std::nullopt);
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
    for (const char* name : {"shot.exr", "100%.exr", "v##/shot.exr", "%s.exr", "shot.%.exr", "a%04x.exr", "",
                             "icon@2x.png", "$FOO.exr", "shot.$G4.exr", "v@@/shot.exr"}) {
        EXPECT_FALSE(workflow::FramePattern(name).is_pattern()) << name;
        EXPECT_EQ(workflow::FramePattern(name).get_path(3), name);
    }
}

/// Files in a folder of the test's own.
class FrameFiles : public testing::Test {
protected:
    std::string path(const std::string& name) const { return folder.file(name); }
    void write(const std::vector<std::string>& names) {
        for (const std::string& name : names)
            folder.write(name, "");
    }
    FrameJobs find(const std::string& input, const std::string& output, const std::string& frames = "") {
        return workflow::find_frame_jobs(path(input), path(output), frames);
    }
    static std::vector<int> get_frames(const std::vector<workflow::ImageJob>& jobs) {
        std::vector<int> frames;
        for (const workflow::ImageJob& job : jobs)
            frames.push_back(job.frame.value_or(-1));
        return frames;
    }
    /// The code and the message of the failure.
    std::string get_refusal(const std::string& input, const std::string& output, const std::string& frames) {
        try {
            find(input, output, frames);
        } catch (const diagnostics::Failure& failure) {
            return std::string(get_name(failure.get_worst().code)) + ": " + failure.get_worst().message;
        }
        return "";
    }

    TempDir folder;
};

TEST_F(FrameFiles, GiveAJobEachWithThePathsOfBothPatterns) {
    write({"in.09.exr", "in.10.exr"});
    const FrameJobs found = find("in.##.exr", "out.%d.png", "9-10");
    EXPECT_TRUE(found.is_sequence);
    ASSERT_EQ(found.jobs.size(), 2u);
    EXPECT_EQ(found.jobs[0].input, path("in.09.exr"));
    EXPECT_EQ(found.jobs[0].output, path("out.9.png"));
    EXPECT_EQ(found.jobs[1].input, path("in.10.exr"));
    EXPECT_EQ(found.jobs[1].output, path("out.10.png"));
    EXPECT_THAT(found.missing, IsEmpty());
}

TEST_F(FrameFiles, AreFoundWithoutARange) {
    write({"in.0012.exr", "in.0003.exr", "in.0004.exr", "in.004.exr", "in.0005.png", "in.00x6.exr",
           "x.0007.exr"});
    for (const char* pattern : {"in.%04d.exr", "in.####.exr", "in.@@@@.exr", "in.$F4.exr"})
        EXPECT_THAT(get_frames(find(pattern, "out.#.exr").jobs), ElementsAre(3, 4, 12)) << pattern;
}

TEST_F(FrameFiles, AreMissingAsErrorsWhereTheyWereAskedFor) {
    write({"in.1.exr", "in.5.exr"});
    const FrameJobs found = find("in.#.exr", "out.#.exr", "1-5,8");
    EXPECT_THAT(get_frames(found.jobs), ElementsAre(1, 5));
    EXPECT_THAT(get_frames(found.missing), ElementsAre(2, 3, 4, 8));
    const auto missing = workflow::describe_missing(found, "in.#.exr");
    ASSERT_TRUE(missing);
    EXPECT_EQ(missing->message, "missing frames of 'in.#.exr': 2-4,8");
    EXPECT_EQ(missing->severity, diagnostics::Severity::ERROR);
    EXPECT_EQ(missing->code, diagnostics::Code::FRAMES_MISSING);
}

TEST_F(FrameFiles, AreMissingAsAWarningBetweenThoseFound) {
    write({"in.1.exr", "in.2.exr", "in.6.exr"});
    const FrameJobs found = find("in.#.exr", "out.#.exr");
    EXPECT_THAT(get_frames(found.missing), ElementsAre(3, 4, 5));
    EXPECT_EQ(workflow::describe_missing(found, "in.#.exr")->severity, diagnostics::Severity::WARNING);
    EXPECT_FALSE(workflow::describe_missing(find("in.#.exr", "out.#.exr", "1-2"), "in.#.exr"));
}

TEST_F(FrameFiles, AreASingleImageWithoutPatterns) {
    const FrameJobs found = find("in.exr", "out.exr");
    EXPECT_FALSE(found.is_sequence);
    ASSERT_EQ(found.jobs.size(), 1u);
    EXPECT_EQ(found.jobs[0].output, path("out.exr"));
    EXPECT_FALSE(found.jobs[0].frame);
}

TEST_F(FrameFiles, AreASingleImageWhereTheNameOfAFileLooksLikeAPattern) {
    write({"in#.exr", "in1.exr"});
    const FrameJobs found = find("in#.exr", "out.exr");
    EXPECT_FALSE(found.is_sequence);
    EXPECT_EQ(found.jobs.at(0).input, path("in#.exr"));
}

TEST_F(FrameFiles, NeedAPatternOnBothSidesOrNone) {
    write({"in.1.exr", "in.exr"});
    EXPECT_THAT(get_refusal("in.exr", "out.#.exr", ""),
                HasSubstr("usage: '" + path("out.#.exr") + "' is the pattern"));
    EXPECT_THAT(get_refusal("in.#.exr", "out.exr", ""),
                HasSubstr("usage: no frame number in '" + path("out.exr")));
    EXPECT_THAT(get_refusal("in.exr", "out.#.exr", "1-3"),
                HasSubstr("usage: no frame number in '" + path("in.exr")));
    EXPECT_THAT(get_refusal("in.#.exr", "out.exr", "1-3"),
                HasSubstr("usage: no frame number in '" + path("out.exr")));
}

TEST_F(FrameFiles, AreRefusedWhereThereAreNone) {
    write({"in.1.exr"});
    EXPECT_THAT(get_refusal("in.####.exr", "out.#.exr", ""),
                HasSubstr("frames-missing: cannot read '" + path("in.####.exr") + "': no such frames"));
    EXPECT_THAT(get_refusal("nowhere/in.#.exr", "out.#.exr", ""), HasSubstr("frames-missing"));
}

TEST_F(FrameFiles, AreNotWrittenOverTheInputsOfOtherFrames) {
    write({"a1.exr", "a11.exr"});
    EXPECT_THAT(
        get_refusal("a#.exr", "a1#.exr", "1,11"),
        HasSubstr("usage: '" + path("a11.exr") + "' is the output of frame 1 and the input of frame 11"));
    EXPECT_THAT(get_frames(find("a#.exr", "a#.exr", "1,11").jobs), ElementsAre(1, 11)) << "in place";
}

} // namespace
