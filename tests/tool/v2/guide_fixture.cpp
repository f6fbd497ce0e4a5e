#include "tests/tool/v2/guide_fixture.h"

#include <fstream>

#include "tests/tool/images.h"
#include "tests/tool/native_image.h"

namespace {

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

} // namespace

std::vector<std::string> GuideFixture::split_words(const std::string& command) {
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

std::vector<std::string> GuideFixture::read_commands() {
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

GuideFixture::GuideFixture() : previous(std::filesystem::current_path()) {
    std::filesystem::current_path(folder.get_path());
    ocio.set(folder.write("show.ocio", CONFIG));
    folder.write("grades.ccc", "<ColorCorrectionCollection>" + make_correction("shot_010", "1.5 1 1") +
                                   make_correction("shot_020", "1 1 0.5") + "</ColorCorrectionCollection>");
    folder.write("luts/sq010/grade.cc", make_correction("sq010", "1.5 1 1"));
    folder.write("luts/sq020/grade.cc", make_correction("sq020", "1 1.25 0.5"));
    folder.write("show.cube", "LUT_1D_SIZE 2\n0 0 0\n0.5 0.5 0.5\n");
    write_images();
}

GuideFixture::~GuideFixture() {
    std::filesystem::current_path(previous);
}

void GuideFixture::write_images() {
    const std::vector<float> rgb = {0.2f, 0.4f, 0.6f, 0.01f, 0.5f, 0.45f, 0.48f, 0.3f, 0.05f};
    for (const char* name : {"render.exr", "log.exr", "shot.0001.exr", "shot.0002.exr"})
        write_image(name, make_image(3, 1, 3, OIIO::TypeHalf, rgb));
    write_image("graded.png", make_image(3, 1, 3, OIIO::TypeUInt16, rgb));
    write_image("scan.dpx", make_image(3, 1, 3, OIIO::TypeUInt16, rgb));
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
    for (int sample = 0; sample < 2; ++sample)
        for (int channel = 0; channel < 5; ++channel)
            deep.pixels.set_deep_value(0, channel, sample, 0.1f * static_cast<float>(channel + 1 + sample));
    write_deep("deep.exr", {deep});
}

float GuideFixture::get(const char* name, const char* channel) {
    return read_native(name).get(channel);
}
