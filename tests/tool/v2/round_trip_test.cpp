// Conversions there and back return what they began with, within the errors that the guide states.

#include <algorithm>
#include <cmath>

#include "tests/tool/images.h"
#include "tests/tool/v2/guide_fixture.h"

namespace {

using Words = std::vector<std::string>;

/// The views of the Academy's output transform, on its interchange color space.
constexpr char ACES_CONFIG[] = R"(ocio_profile_version: 2
roles: {scene_linear: ACEScg, aces_interchange: ACES2065-1, cie_xyz_d65_interchange: XYZ}
file_rules:
  - !<Rule> {name: Default, colorspace: ACEScg}
shared_views:
  - !<View> {name: SDR, view_transform: SDR, display_colorspace: <USE_DISPLAY_NAME>}
displays:
  sRGB:
    - !<Views> [SDR]
  Rec709:
    - !<Views> [SDR]
view_transforms:
  - !<ViewTransform>
    name: SDR
    from_scene_reference: !<BuiltinTransform> {style: ACES-OUTPUT - ACES2065-1_to_CIE-XYZ-D65 - SDR-VIDEO_1.0}
display_colorspaces:
  - !<ColorSpace> {name: XYZ}
  - !<ColorSpace> {name: sRGB, from_display_reference: !<BuiltinTransform> {style: DISPLAY - CIE-XYZ-D65_to_sRGB}}
  - !<ColorSpace>
    name: Rec709
    from_display_reference: !<BuiltinTransform> {style: DISPLAY - CIE-XYZ-D65_to_REC.1886-REC.709}
colorspaces:
  - !<ColorSpace> {name: ACES2065-1}
  - !<ColorSpace> {name: ACEScg, to_scene_reference: !<BuiltinTransform> {style: ACEScg_to_ACES2065-1}}
  - !<ColorSpace> {name: ACEScct, to_scene_reference: !<BuiltinTransform> {style: ACEScct_to_ACES2065-1}}
)";

class RoundTrip : public GuideFixture {
protected:
    RoundTrip() {
        folder.write("aces.ocio", ACES_CONFIG);
        write_ramp("scene.exr", 0.001f, 16.0f);
        write_ramp("shown.exr", 0.02f, 0.98f);
    }

    /// Reds rise in steps of the same ratio, greens fall, blues are between them.
    static void write_ramp(const char* name, float first, float last) {
        constexpr int COUNT = 256;
        std::vector<float> values;
        for (int i = 0; i < COUNT; ++i) {
            const auto value = [&](int at) {
                return first * std::pow(last / first, static_cast<float>(at) / (COUNT - 1));
            };
            const float rising = value(i), falling = value(COUNT - 1 - i);
            values.insert(values.end(), {rising, falling, std::sqrt(rising * falling)});
        }
        write_image(name, make_image(COUNT, 1, 3, OIIO::TypeFloat, values));
    }

    /// Converts `input` to `between`, and that to floats again.
    void go(const std::string& input, const std::string& between, const Words& there, const Words& back) {
        Words first = {"convert", input, between}, second = {"convert", between, "back.exr", "-d", "float"};
        first.insert(first.end(), there.begin(), there.end());
        second.insert(second.end(), back.begin(), back.end());
        ASSERT_THAT(run(first), Succeeds());
        ASSERT_NE(read_image(between).values, read_image(input).values) << "nothing was converted";
        ASSERT_THAT(run(second), Succeeds());
    }

    /// The largest difference of a value of "back.exr".
    static float find_error(const std::string& input, float (*measure)(float) = leave) {
        const std::vector<float> before = read_image(input).values, after = read_image("back.exr").values;
        float largest = before.size() == after.size() ? 0 : INFINITY;
        for (std::size_t i = 0; i < std::min(before.size(), after.size()); ++i) {
            const float error = std::abs(measure(after[i]) - measure(before[i]));
            largest = std::max(largest, std::isfinite(error) ? error : INFINITY);
        }
        return largest;
    }

    static float leave(float value) { return value; }
    /// ACEScct of the guide's config.
    static float encode(float value) { return 0.057f * std::log2(value + 0.0078125f) + 0.5548f; }

    /// The same for pixels that are reds, or not.
    static float find_error_of_reds(const std::string& input, bool are_reds) {
        const Image before = read_image(input), after = read_image("back.exr");
        float largest = 0;
        for (int x = 0; x < before.spec.width; ++x) {
            const bool is_red = before.get("R", x) > before.get("G", x);
            for (const char* name : {"R", "G", "B"})
                if (is_red == are_reds)
                    largest = std::max(largest, std::abs(after.get(name, x) - before.get(name, x)));
        }
        return largest;
    }
};

struct Encoding {
    const char* between;
    const char* depth;
    float error; ///< The largest one of an encoded value.
};

TEST_F(RoundTrip, OfAnEncodingIsAsExactAsItsPixelType) {
    for (const auto& [between, depth, tolerance] : {Encoding{"log.exr", "float", 1e-6f},
                                                    {"log.exr", "half", 0.5f / 2048 + 1e-6f},
                                                    {"log.dpx", "uint10", 0.5f / 1023 + 1e-5f},
                                                    {"log.png", "uint16", 0.5f / 65535 + 1e-6f}}) {
        go("scene.exr", between, {"--from", "ACEScg", "--to", "ACEScct", "-d", depth}, {"--to", "ACEScg"});
        EXPECT_LE(find_error("scene.exr", encode), tolerance) << between << " " << depth;
    }
}

TEST_F(RoundTrip, OfAViewComesBack) {
    ocio.set("aces.ocio");
    for (const char* view : {"sRGB.SDR", "Rec709.SDR"}) {
        go("shown.exr", "scene_of.exr", {"--inverse-view", view, "--to", "ACEScg", "-d", "float"},
           {"--from", "ACEScg", "--view", view});
        EXPECT_LE(find_error_of_reds("shown.exr", false), 1e-4f) << view;
        EXPECT_LE(find_error_of_reds("shown.exr", true), 0.02f)
            << view << ": the inverse of the red modifier is approximate";
    }
}

// Both views have curves, whose constants and functions OpenColorIO gives the same names.
TEST_F(RoundTrip, FromOneViewToAnotherIsAShader) {
    ocio.set("aces.ocio");
    const ToolRun result =
        run({"shader", "--inverse-view", "sRGB.SDR", "--view", "Rec709.SDR", "-o", "shader"});
    ASSERT_THAT(result, Succeeds());
    EXPECT_THAT(result.out, testing::HasSubstr("against CPU:"));
    EXPECT_THAT(run({"view", "shown.exr", "--inverse-view", "sRGB.SDR", "--view", "sRGB.SDR", "--size",
                     "256x1", "--screenshot", "screen.png"}),
                Succeeds());
    const std::vector<float> before = read_image("shown.exr").values, after = read_image("screen.png").values;
    ASSERT_EQ(after.size(), before.size());
    for (std::size_t i = 0; i < before.size(); ++i)
        EXPECT_NEAR(after[i], before[i], 1.5f / 255) << i;
}

TEST_F(RoundTrip, OfAStepComesBack) {
    const std::pair<Words, Words> trips[] = {
        {{"--cdl", "grades.ccc:shot_010"}, {"--cdl", "grades.ccc:shot_010", "--inverse"}},
        {{"--look", "film, warm"}, {"--look", "film, warm", "--inverse"}},
        {{"--lut", "show.cube"}, {"--lut", "show.cube", "--inverse"}},
        {{"--named-transform", "Printing density"}, {"--named-transform", "Printing density", "--inverse"}},
    };
    for (auto [there, back] : trips) {
        SCOPED_TRACE(there.front());
        for (Words* words : {&there, &back})
            words->insert(words->end(), {"--from", "ACEScg", "--to", "ACEScg"});
        there.insert(there.end(), {"-d", "float"});
        go("shown.exr", "between.exr", there, back);
        EXPECT_LE(find_error("shown.exr"), 2e-6f);
    }
}

} // namespace
