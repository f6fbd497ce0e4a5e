// The commands that the guide sets beside those of other programs work as they stand there.

#include <cmath>
#include <filesystem>
#include <fstream>

#include "tests/tool/images.h"
#include "tests/tool/native_image.h"
#include "tests/tool/tool_fixture.h"

namespace {

using testing::HasSubstr;
using testing::Not;

constexpr char CONFIG[] = R"(ocio_profile_version: 2
environment: {SHOT: sq010}
search_path: luts
roles: {scene_linear: ACEScg, color_timing: ACEScct, default: Raw}
file_rules:
  - !<Rule> {name: Scans, pattern: "*", extension: dpx, colorspace: ACEScct}
  - !<Rule> {name: Default, colorspace: default}
displays:
  sRGB:
    - !<View> {name: Film, colorspace: sRGB}
looks:
  - !<Look> {name: film, process_space: ACEScct, transform: !<CDLTransform> {slope: [1.1, 1, 0.9]}}
  - !<Look> {name: warm, process_space: ACEScct, transform: !<CDLTransform> {offset: [0.01, 0, -0.01]}}
colorspaces:
  - !<ColorSpace> {name: ACEScg, encoding: scene-linear}
  - !<ColorSpace> {name: Raw, isdata: true}
  - !<ColorSpace>
    name: ACEScct
    encoding: log
    from_reference: !<LogAffineTransform> {base: 2, lin_side_offset: [0.0078125, 0.0078125, 0.0078125], log_side_slope: [0.057, 0.057, 0.057], log_side_offset: [0.5548, 0.5548, 0.5548]}
  - !<ColorSpace>
    name: sRGB
    encoding: sdr-video
    from_reference: !<ExponentWithLinearTransform> {gamma: [2.4, 2.4, 2.4, 1], offset: [0.055, 0.055, 0.055, 0], direction: inverse}
  - !<ColorSpace>
    name: Shot
    from_reference: !<FileTransform> {src: $SHOT/grade.cc}
named_transforms:
  - !<NamedTransform> {name: Printing density, transform: !<ExponentTransform> {value: [2, 2, 2, 1]}}
)";

std::string make_correction(const std::string& id, const std::string& slope) {
    return "<ColorCorrection id='" + id + "'><SOPNode><Slope>" + slope +
           "</Slope><Offset>0 0 0</Offset><Power>1 1 1</Power></SOPNode>"
           "<SatNode><Saturation>1</Saturation></SatNode></ColorCorrection>\n";
}

/// The words of a command line; double quotes hold words together.
std::vector<std::string> split_words(const std::string& command) {
    std::vector<std::string> words(1);
    bool is_quoted = false;
    for (const char c : command) {
        if (c == '"')
            is_quoted = !is_quoted;
        else if (c == ' ' && !is_quoted)
            words.emplace_back();
        else
            words.back() += c;
    }
    return words;
}

/// The commands in the second column of the guide's table.
std::vector<std::string> read_commands() {
    std::ifstream guide(QB_TEST_CONFIG_FOLDER "/../../docs/guide.md");
    const std::string start = "| `colorio ";
    std::vector<std::string> commands;
    bool is_in_section = false;
    for (std::string line; std::getline(guide, line);) {
        if (line.rfind("## ", 0) == 0)
            is_in_section = line == "## Comparison with oiiotool and the OpenColorIO tools";
        const std::size_t found = line.find(start);
        if (is_in_section && found != line.npos)
            commands.push_back(line.substr(found + start.size(),
                                           line.find('`', found + start.size()) - found - start.size()));
    }
    return commands;
}

class GuideTable : public ToolTest {
protected:
    GuideTable() : previous(std::filesystem::current_path()) {
        std::filesystem::current_path(folder.get_path());
        ocio.set(folder.write("show.ocio", CONFIG));
        folder.write("grades.ccc", "<ColorCorrectionCollection>" + make_correction("shot_010", "1.5 1 1") +
                                       make_correction("shot_020", "1 1 0.5") +
                                       "</ColorCorrectionCollection>");
        for (const char* shot : {"sq010", "sq020"})
            folder.write("luts/" + std::string(shot) + "/grade.cc", make_correction(shot, "1.5 1 1"));
        folder.write("show.cube", "LUT_1D_SIZE 2\n0 0 0\n0.5 0.5 0.5\n");
        write_images();
    }
    ~GuideTable() override { std::filesystem::current_path(previous); }

    void write_images() {
        const std::vector<float> rgb = {0.2f, 0.4f, 0.6f};
        for (const char* name : {"render.exr", "log.exr", "shot.0001.exr", "shot.0002.exr"})
            write_image(name, make_image(1, 1, 3, OIIO::TypeHalf, rgb));
        write_image("graded.png", make_image(1, 1, 3, OIIO::TypeUInt16, rgb));
        write_image("scan.dpx", make_image(1, 1, 3, OIIO::TypeUInt16, rgb));
        NativeImage layers = make_native_image(1, 1,
                                               {{"R", OIIO::TypeHalf},
                                                {"G", OIIO::TypeHalf},
                                                {"B", OIIO::TypeHalf},
                                                {"diffuse.R", OIIO::TypeHalf},
                                                {"diffuse.G", OIIO::TypeHalf},
                                                {"diffuse.B", OIIO::TypeHalf},
                                                {"Z", OIIO::TypeFloat}});
        for (const char* channel : {"R", "G", "B", "diffuse.R", "diffuse.G", "diffuse.B", "Z"})
            layers.fill(channel, 0.25f);
        write_native("layers.exr", {layers});
        NativeImage beauty = layers;
        beauty.spec.attribute("oiio:subimagename", "beauty");
        NativeImage glow = layers;
        glow.spec.attribute("oiio:subimagename", "glow");
        write_native("parts.exr", {beauty, glow});
        DeepImage deep = make_deep_image(1, 1,
                                         {{"R", OIIO::TypeHalf},
                                          {"G", OIIO::TypeHalf},
                                          {"B", OIIO::TypeHalf},
                                          {"A", OIIO::TypeHalf},
                                          {"Z", OIIO::TypeFloat}},
                                         {2});
        write_deep("deep.exr", {deep});
    }

    float get(const char* name, const char* channel) { return read_native(name).get(channel); }

private:
    std::filesystem::path previous;
};

TEST_F(GuideTable, HasCommandsThatWork) {
    const std::vector<std::string> commands = read_commands();
    ASSERT_GE(commands.size(), 30u);
    for (const std::string& command : commands) {
        const ToolRun result = run(split_words(command));
        EXPECT_EQ(result.code, 0) << command << "\n" << result;
        EXPECT_THAT(result.err, Not(HasSubstr("error"))) << command;
    }
}

TEST_F(GuideTable, SkipsWhatItSays) {
    const float log = 0.057f * std::log2(0.25f + 0.0078125f) + 0.5548f;
    ASSERT_THAT(run({"convert", "layers.exr", "out.exr", "--from", "ACEScg", "--to", "ACEScct"}), Succeeds());
    EXPECT_NEAR(get("out.exr", "R"), log, 5e-4);
    EXPECT_NEAR(get("out.exr", "diffuse.R"), log, 5e-4);
    EXPECT_EQ(get("out.exr", "Z"), 0.25f);
    ASSERT_THAT(
        run({"convert", "layers.exr", "out.exr", "--from", "ACEScg", "--to", "ACEScct", "--skip", "diffuse"}),
        Succeeds());
    EXPECT_NEAR(get("out.exr", "R"), log, 5e-4);
    EXPECT_EQ(get("out.exr", "diffuse.R"), 0.25f);
}

TEST_F(GuideTable, ComesBackFromAView) {
    ASSERT_THAT(
        run({"convert", "render.exr", "shown.exr", "-d", "float", "--from", "ACEScg", "--view", "sRGB.Film"}),
        Succeeds());
    // IEC 61966-2-1
    EXPECT_NEAR(read_image("shown.exr").get("R"), 1.055 * std::pow(get("render.exr", "R"), 1 / 2.4) - 0.055,
                1e-6);
    ASSERT_THAT(run({"convert", "shown.exr", "back.exr", "-d", "float", "--inverse-view", "sRGB.Film"}),
                Succeeds());
    for (const char* channel : {"R", "G", "B"})
        EXPECT_NEAR(read_image("back.exr").get(channel), read_image("render.exr").get(channel), 1e-6);
}

} // namespace
