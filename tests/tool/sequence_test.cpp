#include "tests/image/crashing_format.h"
#include "tests/support/no_new_threads.h"
#include "tests/tool/sequence_fixture.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

using Sequence = SequenceTest;

TEST_F(Sequence, ConvertsEveryFrameOfTheRange) {
    write_frames({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12});
    const ToolRun result = convert("1-12");
    EXPECT_THAT(result, Succeeds());
    EXPECT_THAT(result.out, AllOf(HasSubstr("12 frames converted"), HasSubstr("Mpixel/s")));
    EXPECT_THAT(result.err, IsEmpty()) << "no progress bar without a terminal";
    for (int frame = 1; frame <= 12; ++frame)
        expect_converted(frame);
    EXPECT_EQ(count_files(), 24u);
}

TEST_F(Sequence, ConvertsOnlyTheListedFrames) {
    write_frames({1, 2, 3, 4, 5, 6});
    EXPECT_THAT(convert("1-4x2,6"), Succeeds());
    for (const int frame : {1, 3, 6})
        expect_converted(frame);
    for (const int frame : {2, 4, 5})
        EXPECT_FALSE(folder.exists(name("out", frame))) << frame;
}

TEST_F(Sequence, GoesOnAfterAMissingFrameAndFailsAtTheEnd) {
    write_frames({1, 2, 4, 5});
    folder.write(name("in", 3), "no image");
    const ToolRun result = convert("1-6");
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.err, StartsWith("colorio: error: missing frames of '" + path("in.%04d.exr") +
                                       "': 6\ncolorio: error: cannot read '" + path(name("in", 3)) + "'"));
    EXPECT_THAT(result.out, HasSubstr("4 frames converted, 1 failed, 1 missing, "));
    for (const int frame : {1, 2, 4, 5})
        expect_converted(frame);
    EXPECT_EQ(count_files(), 5u + 4u) << "nothing of the failed ones";
}

TEST_F(Sequence, GoesOnAfterAFrameThatCrashesTheReader) {
    write_frames({1, 2, 4, 5});
    folder.write(name("in", 3), make_image_that_crashes_readers()); // the content decides the format
    const ToolRun result = convert("1-5");
    EXPECT_THAT(result, FailsWith(1, "colorio: error: cannot read '" + path(name("in", 3)) +
                                         "': OpenImageIO crashed on it (Segmentation fault)\n"));
    EXPECT_THAT(result.out, HasSubstr("4 frames converted, 1 failed"));
    for (const int frame : {1, 2, 4, 5})
        expect_converted(frame);
    EXPECT_EQ(count_files(), 5u + 4u) << "nothing of the failed one";
}

TEST_F(Sequence, WorksWhereNoThreadCanStart) {
    write_frames({1, 2, 3, 4, 5, 6});
    const NoNewThreads full;
    EXPECT_THAT(convert("1-6"), Succeeds());
    for (int frame = 1; frame <= 6; ++frame)
        expect_converted(frame);
    EXPECT_EQ(count_files(), 12u);
}

TEST_F(Sequence, WorksWithOneThread) {
    write_frames({1, 2, 3});
    EXPECT_THAT(convert("1-3", {"--threads", "1"}), Succeeds());
    for (int frame = 1; frame <= 3; ++frame)
        expect_converted(frame);
}

TEST_F(Sequence, SaysOnceWhatConcernsEveryFrame) {
    Image image = make_image(1, 1, 4, OIIO::TypeFloat, {0.5f, 0.5f, 0.5f, 9.0f});
    image.spec.channelnames = {"R", "G", "B", "Z"};
    for (int frame = 1; frame <= 3; ++frame)
        write_image(path(name("in", frame)), image);
    const ToolRun result = run({"convert", path("in.####.exr"), path("out.####.png"), "--frames", "1-3",
                                "--from", "linear", "--to", "sRGB"});
    EXPECT_THAT(result, Succeeds());
    EXPECT_EQ(result.err, "png does not support the channels Z: they are not written\n");
}

TEST_F(Sequence, ShowsItsProgressOnATerminal) {
    write_frames({1, 2});
    const ToolRun result = convert("1-2", {}, tool::ConsoleTraits{false, true, false});
    EXPECT_THAT(result.err, AllOf(HasSubstr("0/2 frames"), HasSubstr("2/2 frames")));
    EXPECT_THAT(result.out, Not(HasSubstr("\033")));
}

TEST_F(Sequence, NeedsItsFramesAndAPlaceForTheirNumbers) {
    const auto usage = [&](const std::string& input, const std::string& output,
                           std::vector<std::string> more) {
        more.insert(more.begin(), {"convert", input, output, "--from", "sRGB", "--to", "linear"});
        return run(more);
    };
    EXPECT_THAT(usage("in.####.exr", "out.####.exr", {}), FailsWith(1, HasSubstr("no such frames")));
    EXPECT_THAT(usage("in.exr", "out.####.exr", {}), FailsWith(2, HasSubstr("'in.exr' is a single image")));
    EXPECT_THAT(usage("in.####.exr", "out.exr", {}), FailsWith(2, HasSubstr("'out.exr'")));
    EXPECT_THAT(usage("in.exr", "out.####.exr", {"--frames", "1-3"}), FailsWith(2, HasSubstr("'in.exr'")));
    EXPECT_THAT(usage("in.####.exr", "out.exr", {"--frames", "1-3"}), FailsWith(2, HasSubstr("'out.exr'")));
    EXPECT_THAT(usage("in.#.exr", "out.#.exr", {"--frames", "1-3y"}), FailsWith(2, HasSubstr("'1-3y'")));
}

TEST_F(Sequence, IsNotMeantByAFileThatOnlyLooksLikeOne) {
    write_image(path("in#.exr"), make_image(1, 1, 3, OIIO::TypeFloat, {0.5f, 0.5f, 0.5f}));
    EXPECT_THAT(run({"convert", path("in#.exr"), path("out.exr"), "--from", "sRGB", "--to", "linear"}),
                Succeeds());
    EXPECT_TRUE(folder.exists("out.exr"));
}

TEST_F(Sequence, HasTheFramesThatExistWithoutARange) {
    write_frames({3, 4, 7, 8});
    const ToolRun result =
        run({"convert", path("in.$F4.exr"), path("out.@@@@.exr"), "--from", "sRGB", "--to", "linear"});
    EXPECT_THAT(result, Succeeds());
    EXPECT_EQ(result.err, "colorio: warning: missing frames of '" + path("in.$F4.exr") + "': 5-6\n");
    EXPECT_THAT(result.out, HasSubstr("4 frames converted, 2 missing, "));
    for (const int frame : {3, 4, 7, 8})
        expect_converted(frame);
}

TEST_F(Sequence, NamesMissingFramesAsRanges) {
    write_frames({1, 60});
    EXPECT_THAT(convert("1-60"),
                FailsWith(1, "colorio: error: missing frames of '" + path("in.%04d.exr") + "': 2-59\n"));
    expect_converted(60);
    EXPECT_THAT(convert("2-59x3"), FailsWith(1, HasSubstr("': 2-59x3\n"))) << "none of them exists";
}

TEST_F(Sequence, ShowsItsProgressAtAnyWidth) {
    write_frames({1, 2});
    const ToolRun result = convert("1-2", {}, tool::ConsoleTraits{false, true, false, 10});
    EXPECT_EQ(result.err.find("frames"), std::string::npos);
    EXPECT_THAT(result.err, HasSubstr("\r\033[K2/2\r\033[K"));
}

} // namespace
