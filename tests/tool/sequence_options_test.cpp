#include <cstdlib>
#include <map>
#include <numeric>
#include <sstream>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "tests/tool/sequence_fixture.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

using SequenceOptions = SequenceTest;

TEST_F(SequenceOptions, IsResumed) {
    write_frames({1, 2, 3, 4});
    EXPECT_THAT(convert("1-2"), Succeeds());
    EXPECT_THAT(convert("1-4", {"--resume"}).out, HasSubstr("2 frames converted, 2 up to date, "));
    EXPECT_THAT(convert("1-4", {"--resume"}).out, HasSubstr("0 frames converted, 4 up to date, "));
    EXPECT_THAT(convert("1-4", {"--resume", "-d", "half"}).out, HasSubstr("4 frames converted, "));
    EXPECT_THAT(convert("1-4", {}).out, HasSubstr("4 frames converted, ")) << "without --resume";
}

TEST_F(SequenceOptions, IsResumedInItsPlaceFromANamedColorSpace) {
    write_frames({1, 2});
    const auto resume = [&](const std::vector<std::string>& more) {
        std::vector<std::string> line = {"convert", path("in.####.exr"), path("in.####.exr"), "--to",
                                         "linear",  "--resume"};
        line.insert(line.end(), more.begin(), more.end());
        return run(line);
    };
    EXPECT_THAT(resume({}), FailsWith(2, HasSubstr("--resume needs --from")));
    EXPECT_THAT(resume({"--from", "sRGB", "--frames", "1"}).out, HasSubstr("1 frame converted, "));
    EXPECT_THAT(resume({"--from", "sRGB"}).out, HasSubstr("1 frame converted, 1 up to date, "));
    for (const int frame : {1, 2})
        EXPECT_NEAR(read_image(path(name("in", frame))).get("G", 4, 2),
                    formula::srgb_to_linear(get_gray(frame)), 5e-6)
            << "converted once";
}

TEST_F(SequenceOptions, IsResumedByAnotherProcess) {
    write_frames({1, 2});
    EXPECT_THAT(convert("1-2"), Succeeds());
    const std::string line =
        fmt::format("'{}' convert '{}' '{}' --frames 1-2 --from sRGB --to linear --resume "
                    "--json > '{}'",
                    COLORIO_PROGRAM, path("in.%04d.exr"), path("out.####.exr"), path("lines.txt"));
    ASSERT_EQ(std::system(line.c_str()), 0) << line;
    EXPECT_THAT(folder.read("lines.txt"), HasSubstr("\"up-to-date\":2,"));
}

TEST_F(SequenceOptions, IsNotResumedWithAnotherLut) {
    write_frames({1});
    const auto write_lut = [&](const std::string& end) {
        folder.write("own.spi1d",
                     "Version 1\nFrom 0.0 1.0\nLength 2\nComponents 1\n{\n0.0\n" + end + "\n}\n");
    };
    write_lut("0.5");
    EXPECT_THAT(convert("1", {"--lut", path("own.spi1d")}), Succeeds());
    EXPECT_THAT(convert("1", {"--lut", path("own.spi1d"), "--resume"}).out, HasSubstr("1 up to date"));
    write_lut("0.6");
    EXPECT_THAT(convert("1", {"--lut", path("own.spi1d"), "--resume"}).out, HasSubstr("1 frame converted"));
}

TEST_F(SequenceOptions, IsOnlyPlanned) {
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

TEST_F(SequenceOptions, IsQuietExceptForErrors) {
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

TEST_F(SequenceOptions, IsALineOfJsonForEachFrameAndASummary) {
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

TEST_F(SequenceOptions, ListManyEqualFailuresOnce) {
    std::vector<int> frames(12);
    std::iota(frames.begin(), frames.end(), 1);
    write_frames(frames);
    const auto count_errors = [&](const ToolRun& result) {
        EXPECT_EQ(result.code, 1);
        std::size_t count = 0;
        for (std::size_t at = result.err.find("error"); at != std::string::npos;
             at = result.err.find("error", at + 1))
            ++count;
        return count;
    };
    const ToolRun all = convert("1-12", {"--layers", "nope"});
    EXPECT_EQ(count_errors(all), 4u) << all.err;
    EXPECT_THAT(all.err, HasSubstr("error: 9 more frames failed like this one: 4-12\n"));
    EXPECT_EQ(count_errors(convert("1-10", {"--layers", "nope"})), 10u);
}

TEST_F(SequenceOptions, OfASingleImageIsJsonToo) {
    write_frames({1});
    const ToolRun result = run({"convert", path(name("in", 1)), path("out.exr"), "--to", "sRGB", "--json"});
    EXPECT_EQ(result.code, 0);
    const nlohmann::json line = nlohmann::json::parse(result.out.substr(0, result.out.find('\n')));
    EXPECT_TRUE(line["frame"].is_null());
    EXPECT_EQ(line["status"], "converted");
}

TEST_F(SequenceOptions, TakesASizeOfMemory) {
    write_frames({1, 2, 3});
    const ToolRun narrow = convert("1-3", {"--memory", "1M"});
    EXPECT_THAT(narrow, Succeeds()) << "one frame after the other";
    EXPECT_THAT(narrow.err,
                HasSubstr("warning: an image needs more memory than is allowed: it is converted alone"));
    EXPECT_EQ(narrow.err.find("more memory"), narrow.err.rfind("more memory")) << "once";
    for (const int frame : {1, 2, 3})
        expect_converted(frame);
    EXPECT_THAT(convert("1-3", {"--memory", "much"}), FailsWith(2, HasSubstr("invalid size 'much'")));
}

TEST_F(SequenceOptions, RefusesOptionsThatExcludeEachOther) {
    write_frames({1});
    EXPECT_EQ(convert("1", {"--json", "--quiet"}).code, 2);
    EXPECT_EQ(convert("1", {"--json", "--why"}).code, 2);
}

} // namespace
