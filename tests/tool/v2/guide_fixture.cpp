#include "tests/tool/v2/guide_fixture.h"

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

GuideFixture::GuideFixture() : previous(std::filesystem::current_path()) {
    std::filesystem::current_path(folder.get_path());
    ocio.set(folder.write("show.ocio", CONFIG));
    folder.write("grades.ccc", "<ColorCorrectionCollection>" + make_correction("shot_010", "1.5 1 1") +
                                   make_correction("shot_020", "1 1 0.5") + "</ColorCorrectionCollection>");
    for (const char* shot : {"sq010", "sq020"})
        folder.write("luts/" + std::string(shot) + "/grade.cc", make_correction(shot, "1.5 1 1"));
    folder.write("show.cube", "LUT_1D_SIZE 2\n0 0 0\n0.5 0.5 0.5\n");
    write_images();
}

GuideFixture::~GuideFixture() {
    std::filesystem::current_path(previous);
}

void GuideFixture::write_images() {
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

float GuideFixture::get(const char* name, const char* channel) {
    return read_native(name).get(channel);
}
