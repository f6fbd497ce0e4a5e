#include <cstdlib>
#include <map>
#include <sstream>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "tests/colorio/color_formulas.h"
#include "tests/image/crashing_format.h"
#include "tests/support/no_new_threads.h"
#include "tests/tool/images.h"
#include "tests/tool/tool_fixture.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

class Sequence : public ToolTest {
protected:
    /// A frame whose gray tells its number.
    static float get_gray(int frame) { return static_cast<float>(frame) / 64; }

    void write_frames(const std::vector<int>& frames) {
        for (const int frame : frames)
            write_image(path(name("in", frame)),
                        make_image(5, 3, 3, OIIO::TypeFloat, std::vector<float>(45, get_gray(frame))));
    }

    static std::string name(const std::string& stem, int frame) {
        return stem + "." + std::string(frame < 10 ? "000" : "00") + std::to_string(frame) + ".exr";
    }

    ToolRun convert(const std::string& frames, std::vector<std::string> more = {},
                    const tool::ConsoleTraits& traits = {}) {
        more.insert(more.begin(), {"convert", path("in.%04d.exr"), path("out.####.exr"), "--frames", frames,
                                   "--from", "sRGB", "--to", "linear"});
        return run(more, traits);
    }

    void expect_converted(int frame) {
        ASSERT_TRUE(folder.exists(name("out", frame))) << frame;
        EXPECT_NEAR(read_image(path(name("out", frame))).get("G", 4, 2),
                    formula::srgb_to_linear(get_gray(frame)), 5e-6);
    }
};

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
    folder.write(name("in", 3), make_image_that_crashes_readers()); // the content tells the format
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

TEST_F(Sequence, IsResumed) {
    write_frames({1, 2, 3, 4});
    EXPECT_THAT(convert("1-2"), Succeeds());
    EXPECT_THAT(convert("1-4", {"--resume"}).out, HasSubstr("2 frames converted, 2 up to date, "));
    EXPECT_THAT(convert("1-4", {"--resume"}).out, HasSubstr("0 frames converted, 4 up to date, "));
    EXPECT_THAT(convert("1-4", {"--resume", "-d", "half"}).out, HasSubstr("4 frames converted, "));
    EXPECT_THAT(convert("1-4", {}).out, HasSubstr("4 frames converted, ")) << "without --resume";
}

TEST_F(Sequence, IsResumedInItsPlaceFromANamedColorSpace) {
    write_frames({1, 2});
    const auto resume = [&](const std::vector<std::string>& more) {
        std::vector<std::string> line = {"convert", path("in.####.exr"), path("in.####.exr"), "--to",
                                         "linear",  "--resume"};
        line.insert(line.end(), more.begin(), more.end());
        return run(line);
    };
    EXPECT_THAT(resume({}), FailsWith(2, HasSubstr("--resume needs --from")));
    EXPECT_THAT(resume({"--from", "sRGB", "--frames", "1"}).out, HasSubstr("1 frames converted, "));
    EXPECT_THAT(resume({"--from", "sRGB"}).out, HasSubstr("1 frames converted, 1 up to date, "));
    for (const int frame : {1, 2})
        EXPECT_NEAR(read_image(path(name("in", frame))).get("G", 4, 2),
                    formula::srgb_to_linear(get_gray(frame)), 5e-6)
            << "converted once";
}

TEST_F(Sequence, IsResumedByAnotherProcess) {
    write_frames({1, 2});
    EXPECT_THAT(convert("1-2"), Succeeds());
    const std::string line =
        fmt::format("'{}' convert '{}' '{}' --frames 1-2 --from sRGB --to linear --resume "
                    "--json > '{}'",
                    COLORIO_PROGRAM, path("in.%04d.exr"), path("out.####.exr"), path("lines.txt"));
    ASSERT_EQ(std::system(line.c_str()), 0) << line;
    EXPECT_THAT(folder.read("lines.txt"), HasSubstr("\"up-to-date\":2,"));
}

TEST_F(Sequence, IsNotResumedWithAnotherLut) {
    write_frames({1});
    const auto write_lut = [&](const std::string& end) {
        folder.write("own.spi1d",
                     "Version 1\nFrom 0.0 1.0\nLength 2\nComponents 1\n{\n0.0\n" + end + "\n}\n");
    };
    write_lut("0.5");
    EXPECT_THAT(convert("1", {"--lut", path("own.spi1d")}), Succeeds());
    EXPECT_THAT(convert("1", {"--lut", path("own.spi1d"), "--resume"}).out, HasSubstr("1 up to date"));
    write_lut("0.6");
    EXPECT_THAT(convert("1", {"--lut", path("own.spi1d"), "--resume"}).out, HasSubstr("1 frames converted"));
}

TEST_F(Sequence, IsOnlyPlanned) {
    write_frames({1, 2, 3, 4, 5});
    EXPECT_THAT(convert("2-3"), Succeeds());
    const size_t files = count_files();
    EXPECT_EQ(convert("1-7", {"--dry-run"}).out,
              path("out.####.exr") + ": Tavelion|sRGB to Tavelion|linear, would convert: 1-5\n");
    const ToolRun result = convert("1-7", {"--dry-run", "--resume"});
    EXPECT_THAT(result, FailsWith(1, HasSubstr("missing frames of '" + path("in.%04d.exr") + "': 6-7")));
    EXPECT_EQ(result.out, path("out.####.exr") + ": Tavelion|sRGB to Tavelion|linear, up to date: 2-3\n" +
                              path("out.####.exr") +
                              ": Tavelion|sRGB to Tavelion|linear, would convert (no output): 1,4-5\n");
    EXPECT_EQ(count_files(), files);
}

TEST_F(Sequence, IsQuietExceptForErrors) {
    write_frames({1, 2});
    folder.write(name("in", 3), "no image");
    const ToolRun result =
        run({"convert", path("in.####.exr"), path("out.####.jpg"), "--to", "sRGB", "--quiet"},
            tool::ConsoleTraits{false, true, false});
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err, AllOf(StartsWith("colorio: error: cannot read '" + path(name("in", 3)) + "'"),
                                  Not(HasSubstr("frames"))));
    EXPECT_EQ(result.code, 1);
    EXPECT_TRUE(folder.exists("out.0002.jpg"));
}

TEST_F(Sequence, IsALineOfJsonForEachFrameAndASummary) {
    write_frames({1, 2, 4});
    folder.write(name("in", 4), "no image");
    EXPECT_THAT(convert("1"), Succeeds());
    const ToolRun result = convert("1-4", {"--json", "--resume"});
    EXPECT_EQ(result.code, 1);
    std::map<int, nlohmann::json> frames;
    nlohmann::json summary;
    std::istringstream lines(result.out);
    for (std::string line; std::getline(lines, line);) {
        const nlohmann::json object = nlohmann::json::parse(line);
        if (object.contains("summary"))
            summary = object["summary"];
        else
            frames[object["frame"]] = object;
        EXPECT_EQ(object.contains("summary"), lines.peek() == EOF) << "the summary comes last";
    }
    ASSERT_EQ(frames.size(), 4u);
    EXPECT_EQ(frames[1]["status"], "up-to-date");
    EXPECT_EQ(frames[2]["status"], "converted");
    EXPECT_EQ(frames[2]["reason"], "no output");
    EXPECT_EQ(frames[2]["input"], path(name("in", 2)));
    EXPECT_EQ(frames[2]["output"], path(name("out", 2)));
    EXPECT_EQ(frames[2]["width"], 5);
    EXPECT_EQ(frames[2]["height"], 3);
    EXPECT_EQ(frames[2]["type"], "float");
    EXPECT_EQ(frames[2]["pixels"], 15);
    EXPECT_EQ(frames[3]["status"], "missing");
    EXPECT_EQ(frames[4]["status"], "failed");
    EXPECT_EQ(frames[4]["error"]["code"], "image-unreadable");
    EXPECT_EQ(summary["converted"], 1);
    EXPECT_EQ(summary["up-to-date"], 1);
    EXPECT_EQ(summary["failed"], 1);
    EXPECT_EQ(summary["missing"], 1);
    EXPECT_EQ(summary["pixels"], 15);
    EXPECT_EQ(summary["conversion"], "Tavelion|sRGB to Tavelion|linear");
}

TEST_F(Sequence, OfASingleImageIsJsonToo) {
    write_frames({1});
    const ToolRun result = run({"convert", path(name("in", 1)), path("out.exr"), "--to", "sRGB", "--json"});
    EXPECT_EQ(result.code, 0);
    const nlohmann::json line = nlohmann::json::parse(result.out.substr(0, result.out.find('\n')));
    EXPECT_TRUE(line["frame"].is_null());
    EXPECT_EQ(line["status"], "converted");
}

TEST_F(Sequence, TakesASizeOfMemory) {
    write_frames({1, 2, 3});
    EXPECT_THAT(convert("1-3", {"--memory", "1M"}), Succeeds()) << "one frame after the other";
    for (const int frame : {1, 2, 3})
        expect_converted(frame);
    EXPECT_THAT(convert("1-3", {"--memory", "much"}), FailsWith(2, HasSubstr("invalid size 'much'")));
}

TEST_F(Sequence, RefusesOptionsThatExcludeEachOther) {
    write_frames({1});
    EXPECT_EQ(convert("1", {"--json", "--quiet"}).code, 2);
    EXPECT_EQ(convert("1", {"--json", "--why"}).code, 2);
}

} // namespace
