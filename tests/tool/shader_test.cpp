#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>
#include <sstream>

#include <nlohmann/json.hpp>

#include "tests/colorio/color_formulas.h"
#include "tests/tool/tool_fixture.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

constexpr size_t EDGE = 32;

struct Row {
    double red, green, blue;
};

class Shader : public ToolTest {
protected:
    ToolRun make_shader(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), {"shader", "-o", path("shader")});
        return run(arguments);
    }

    /// The rows of numbers behind the headings of a .cube file.
    static std::vector<Row> parse_cube(const std::string& text) {
        std::istringstream stream(text);
        std::vector<Row> rows;
        for (std::string line; std::getline(stream, line);) {
            std::istringstream words(line);
            Row row;
            if (words >> row.red >> row.green >> row.blue)
                rows.push_back(row);
        }
        return rows;
    }

    /// The largest and the mean difference that the line of a grid shows.
    static std::pair<double, double> get_differences(const std::string& out, const std::string& grid) {
        std::istringstream line(out.substr(std::min(out.find("\n" + grid), out.size() - 1)));
        line.ignore(static_cast<std::streamsize>(grid.size()) + 1);
        size_t count = 0;
        double largest = 0, mean = 0;
        if (!(line >> count >> largest >> mean))
            throw std::runtime_error("no line of the grid " + grid + " in " + out);
        return {largest, mean};
    }
};

TEST_F(Shader, WritesTheTextAndTheTableInTwoFormats) {
    const ToolRun result = make_shader({"--from", "sRGB", "--to", "linear"});
    EXPECT_THAT(result, Succeeds());
    EXPECT_THAT(result.out,
                AllOf(HasSubstr(path("shader/OCIODisplay.glsl")), HasSubstr(path("shader/OCIODisplay.spi3d")),
                      HasSubstr(path("shader/OCIODisplay.cube"))));
    EXPECT_THAT(folder.read("shader/OCIODisplay.glsl"), HasSubstr("vec4 OCIODisplay"));
    EXPECT_THAT(folder.read("shader/OCIODisplay.spi3d"), StartsWith("SPILUT 1.0\n3 3\n32 32 32\n0 0 0 "));
    EXPECT_THAT(folder.read("shader/OCIODisplay.cube"), HasSubstr("LUT_3D_SIZE 32\n"));
}

TEST_F(Shader, HasATableWithRedFastestOfTheConversion) {
    ASSERT_THAT(make_shader({"--from", "sRGB", "--to", "linear"}), Succeeds());
    const std::vector<Row> rows = parse_cube(folder.read("shader/OCIODisplay.cube"));
    ASSERT_EQ(rows.size(), EDGE * EDGE * EDGE);
    // The allocation of the source, -0.125 to 1.125, is spread over the table.
    const auto decode = [](size_t step) {
        return formula::srgb_to_linear(-0.125 + 1.25 * static_cast<double>(step) / (EDGE - 1));
    };
    for (const auto& [red, green, blue] :
         {std::array<size_t, 3>{31, 0, 0}, {4, 20, 9}, {0, 31, 12}, {31, 31, 31}}) {
        const Row& row = rows[(blue * EDGE + green) * EDGE + red];
        EXPECT_NEAR(row.red, decode(red), 2e-5);
        EXPECT_NEAR(row.green, decode(green), 2e-5);
        EXPECT_NEAR(row.blue, decode(blue), 2e-5);
    }
}

TEST_F(Shader, HasTheSameTableInBothFormats) {
    ASSERT_THAT(make_shader({"--from", "linear", "--view", "Tavelion.sRGB"}), Succeeds());
    const std::vector<Row> rows = parse_cube(folder.read("shader/OCIODisplay.cube"));
    std::istringstream stream(folder.read("shader/OCIODisplay.spi3d"));
    std::string line;
    for (int heading = 0; heading < 3; ++heading)
        std::getline(stream, line);
    size_t count = 0;
    for (size_t red, green, blue; stream >> red >> green >> blue; ++count) {
        const Row& expected = rows.at((blue * EDGE + green) * EDGE + red);
        Row row;
        stream >> row.red >> row.green >> row.blue;
        ASSERT_EQ(row.red, expected.red);
        ASSERT_EQ(row.green, expected.green);
        ASSERT_EQ(row.blue, expected.blue);
    }
    EXPECT_EQ(count, EDGE * EDGE * EDGE);
}

TEST_F(Shader, AnswersJson) {
    const ToolRun result = make_shader({"--from", "sRGB", "--to", "linear", "--json"});
    ASSERT_THAT(result, Succeeds());
    const nlohmann::json answer = nlohmann::json::parse(result.out);
    EXPECT_EQ(answer["source"], "Tavelion|sRGB");
    EXPECT_EQ(answer["destination"], "Tavelion|linear");
    EXPECT_EQ(answer["glsl"], "core");
    ASSERT_EQ(answer["files"].size(), 3u);
    for (const std::string file : answer["files"])
        EXPECT_TRUE(std::filesystem::is_regular_file(file)) << file;
    ASSERT_FALSE(answer["renderer"].is_null()) << "this machine runs no shaders";
    const nlohmann::json& difference = answer["differences"].at(0);
    EXPECT_EQ(difference["colors"], "0 to 1");
    EXPECT_GT(difference["largest"], 0.0003);
    EXPECT_LT(difference["largest"], 0.0007);
    EXPECT_EQ(difference["cpu"].size(), 3u);
    EXPECT_EQ(difference["incomparable"], 0);
}

TEST_F(Shader, SpeaksTheDialectThatIsAsked) {
    ASSERT_THAT(make_shader({"--from", "sRGB", "--to", "linear", "--glsl", "legacy"}), Succeeds());
    EXPECT_THAT(folder.read("shader/OCIODisplay.glsl"), HasSubstr("texture3D(lut3d"));
    ASSERT_THAT(make_shader({"--from", "sRGB", "--to", "linear", "--glsl", "core"}), Succeeds());
    EXPECT_THAT(folder.read("shader/OCIODisplay.glsl"),
                AllOf(HasSubstr("texture(lut3d"), Not(HasSubstr("texture3D"))));
}

TEST_F(Shader, IsMeasuredAgainstTheCpuInBothDialects) {
    for (const char* dialect : {"core", "legacy"}) {
        const ToolRun result = make_shader({"--from", "sRGB", "--to", "linear", "--glsl", dialect});
        ASSERT_THAT(result, Succeeds());
        ASSERT_THAT(result.err, IsEmpty()) << "this machine runs no shaders";
        const auto [largest, mean] = get_differences(result.out, "0 to 1");
        // Between two of 32 samples the sRGB curve bends by up to (1.25 / 31)^2 / 8 times its second
        // derivative, 3.07 at the end of the domain: 0.00062.
        EXPECT_LT(largest, 0.0007) << dialect;
        EXPECT_GT(largest, 0.0003) << dialect << ": a difference must show";
        EXPECT_LT(mean, largest) << dialect;
        EXPECT_GT(mean, 0.0) << dialect;
    }
}

TEST_F(Shader, OfASpaceAndItselfIsNone) {
    EXPECT_THAT(make_shader({"--from", "sRGB", "--to", "sRGB"}),
                FailsWith(1, HasSubstr("source and destination are the same")));
    EXPECT_FALSE(folder.exists("shader"));
}

TEST_F(Shader, NeedsItsTwoEndsAndAFolder) {
    EXPECT_THAT(run({"shader", "--from", "sRGB", "--to", "linear"}), FailsWith(2, HasSubstr("--output")));
    EXPECT_THAT(make_shader({"--to", "linear"}),
                FailsWith(2, HasSubstr("--from or --inverse-view is required")));
    EXPECT_THAT(make_shader({"--from", "sRGB"}), FailsWith(2, HasSubstr("--to or --view")));
    EXPECT_THAT(make_shader({"--from", "sRGB", "--to", "linear", "--glsl", "es"}),
                FailsWith(2, HasSubstr("es")));
}

// 0.5 in "half" is 1 in "lin"; the look doubles and the CDL triples that, or their inverses.
TEST_F(Shader, TakesTheStepsThatConvertTakes) {
    const std::string config = folder.write("show.ocio", R"(ocio_profile_version: 1
search_path: .
strictparsing: true
roles: {default: lin, scene_linear: lin}
displays: {M: [!<View> {name: V, colorspace: half}]}
looks:
  - !<Look> {name: double, process_space: lin, transform: !<MatrixTransform> {matrix: [2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 1]}}
colorspaces:
  - !<ColorSpace> {name: lin}
  - !<ColorSpace>
    name: half
    from_reference: !<MatrixTransform> {matrix: [0.5, 0, 0, 0, 0, 0.5, 0, 0, 0, 0, 0.5, 0, 0, 0, 0, 1]}
)");
    const std::string cdl =
        folder.write("triple.cc", "<ColorCorrection id=\"a\"><SOPNode><Slope>3 3 3</Slope><Offset>0 0 "
                                  "0</Offset><Power>1 1 1</Power></SOPNode></ColorCorrection>");
    for (const std::vector<std::string>& steps : std::vector<std::vector<std::string>>{
             {"--from", "half", "--look", "double", "--cdl", cdl, "--to", "lin"},
             {"--from", "half", "--cdl", cdl, "--inverse", "--look", "-double", "--to", "lin"}}) {
        std::vector<std::string> arguments = {"--config", config, "--json"};
        arguments.insert(arguments.end(), steps.begin(), steps.end());
        const ToolRun result = make_shader(arguments);
        ASSERT_THAT(result, Succeeds());
        const nlohmann::json answer = nlohmann::json::parse(result.out);
        EXPECT_EQ(answer["files"].size(), 7u) << "the text, and two files for each of three LUTs";
        EXPECT_THAT(folder.read("shader/OCIODisplay.glsl"), HasSubstr("const sampler3D lut3d_2) {"));
        ASSERT_EQ(answer["differences"].size(), 2u);
        for (const nlohmann::json& difference : answer["differences"]) {
            EXPECT_LT(difference["largest"], 1e-3) << difference;
            EXPECT_EQ(difference["incomparable"], 0);
        }
        // The steps multiply every color by the same factor.
        const double at = answer["differences"][1]["at"][0], cpu = answer["differences"][1]["cpu"][0];
        EXPECT_NEAR(cpu / at, steps[2] == "--look" ? 2.0 * 2 * 3 : 2.0 / 3 / 2, 1e-3);
    }
}

TEST_F(Shader, FailsWhereItsFolderCannotBe) {
    folder.write("shader", "a file");
    EXPECT_THAT(make_shader({"--from", "sRGB", "--to", "linear"}), FailsWith(1, HasSubstr(path("shader"))));
}

} // namespace
