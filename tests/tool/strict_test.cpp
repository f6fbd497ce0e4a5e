// --strict fails wherever a color space is assumed or doubtful.

#include <filesystem>
#include <fstream>

#include "tests/tool/color_tag_files.h"
#include "tests/tool/images.h"
#include "tests/tool/tool_fixture.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class Strict : public ToolTest {
protected:
    Strict() {
        folder.write("show.ocio",
                     "ocio_profile_version: 1\nstrictparsing: true\n"
                     "roles: {scene_linear: lin, matte_paint: paint}\n"
                     "displays:\n  M:\n    - !<View> {name: V, colorspace: lin}\n"
                     "colorspaces:\n  - !<ColorSpace> {name: lin}\n  - !<ColorSpace> {name: paint}\n"
                     "  - !<ColorSpace> {name: Cineon}\n  - !<ColorSpace> {name: g22_rec709}\n");
    }

    void write(const std::string& name, OIIO::TypeDesc depth, const OIIO::ImageSpec& attributes = {}) {
        Image image = make_image(1, 1, 3, depth, {0.5f, 0.5f, 0.5f});
        image.spec.extra_attribs = attributes.extra_attribs;
        write_image(path(name), image);
    }

    ToolRun convert(const std::string& input, std::vector<std::string> more = {}) {
        more.insert(more.begin(),
                    {"convert", path(input), path("out.exr"), "--to", "lin", "--config", path("show.ocio")});
        return run(more);
    }

    /// Fails under --strict for that reason, which is a warning without it.
    void expect_doubt(const std::string& input, const std::string& reason) {
        const ToolRun lax = convert(input);
        EXPECT_THAT(lax, Succeeds()) << input;
        EXPECT_THAT(lax.err, AllOf(HasSubstr("warning"), HasSubstr(reason))) << input;
        std::filesystem::remove(path("out.exr"));
        EXPECT_THAT(convert(input, {"--strict"}),
                    FailsWith(1, AllOf(HasSubstr("cannot determine the color space of '" + input + "'"),
                                       HasSubstr(reason), HasSubstr("--from"))));
        EXPECT_FALSE(folder.exists("out.exr"));
    }
};

TEST_F(Strict, RefusesTagsOfUnknownColorSpaces) {
    OIIO::ImageSpec spec;
    spec.attribute("colorInteropID", "lin_foo_scene");
    write("in.exr", OIIO::TypeHalf, spec);
    expect_doubt("in.exr", "colorInteropID 'lin_foo_scene' does not name a color space of show.ocio");
}

TEST_F(Strict, RefusesTagsOfColorSpacesThatTheConfigLacks) {
    write("in.png", OIIO::TypeUInt8);
    insert_png_chunk(path("in.png"), "cICP", std::string("\x09\x10\x00\x01", 4));
    expect_doubt("in.png", "CICP 9 16 0 1 describes colors that no color space of show.ocio has");
}

TEST_F(Strict, RefusesProfilesThatAreNotRecognized) {
    const std::vector<std::uint8_t> profile =
        make_icc_profile({0.5, 0.3, 0.1, 0.3, 0.6, 0.1, 0.2, 0.1, 0.6}, 256);
    OIIO::ImageSpec spec;
    spec.attribute("ICCProfile", OIIO::TypeDesc(OIIO::TypeDesc::UINT8, static_cast<int>(profile.size())),
                   profile.data());
    write("in.tif", OIIO::TypeUInt8, spec);
    expect_doubt("in.tif", "its tag ICC profile is not recognized");
    EXPECT_THAT(convert("in.tif", {"--why"}).out, HasSubstr("ICC profile is not recognized\n"));
    spec.attribute("colorio:ColorSpace", "Cineon");
    write("named.png", OIIO::TypeUInt8, spec);
    EXPECT_THAT(convert("named.png", {"--strict"}), Succeeds()) << "another tag decides";
}

TEST_F(Strict, RefusesProfilesThatALessSpecificTagContradicts) {
    std::ofstream(path("show.ocio"), std::ios::app) << "  - !<ColorSpace> {name: srgb_tx}\n";
    const std::vector<std::uint8_t> profile =
        make_icc_profile({0.5, 0.3, 0.1, 0.3, 0.6, 0.1, 0.2, 0.1, 0.6}, 256);
    OIIO::ImageSpec spec;
    spec.attribute("Exif:ColorSpace", 1);
    write("srgb.jpg", OIIO::TypeUInt8, spec);
    EXPECT_THAT(convert("srgb.jpg", {"--strict"}), Succeeds());
    spec.attribute("ICCProfile", OIIO::TypeDesc(OIIO::TypeDesc::UINT8, static_cast<int>(profile.size())),
                   profile.data());
    write("in.jpg", OIIO::TypeUInt8, spec);
    expect_doubt("in.jpg", "its tag ICC profile is not recognized");
}

TEST_F(Strict, RefusesUnknownPrimaries) {
    OIIO::ImageSpec spec;
    const float xy[] = {0.7f, 0.3f, 0.2f, 0.8f, 0.1f, 0.0f, 0.31f, 0.33f};
    spec.attribute("chromaticities", OIIO::TypeDesc(OIIO::TypeDesc::FLOAT, 8), xy);
    write("in.exr", OIIO::TypeHalf, spec);
    expect_doubt("in.exr", "is not recognized");
}

TEST_F(Strict, AcceptsTagsOfColorSpacesThatTheConfigHas) {
    write("in.png", OIIO::TypeUInt8);
    insert_png_chunk(path("in.png"), "cICP", std::string("\x01\x04\x00\x01", 4));
    EXPECT_THAT(convert("in.png", {"--strict"}), Succeeds());
}

TEST_F(Strict, RefusesFramesWithOtherTags) {
    OIIO::ImageSpec spec;
    spec.attribute("colorio:ColorSpace", "Cineon");
    write("shot.1.png", OIIO::TypeUInt8, spec);
    write("shot.2.png", OIIO::TypeUInt8, spec);
    spec.attribute("colorio:ColorSpace", "paint");
    write("shot.3.png", OIIO::TypeUInt8, spec);
    const auto run_sequence = [&](std::vector<std::string> more) {
        more.insert(more.begin(), {"convert", path("shot.#.png"), path("out.#.exr"), "--frames", "1-3",
                                   "--to", "lin", "--config", path("show.ocio")});
        return run(more);
    };
    constexpr char REASON[] =
        "the color tags of some images differ from those of the first one, whose color space is used";
    const ToolRun lax = run_sequence({});
    EXPECT_THAT(lax, Succeeds());
    EXPECT_THAT(lax.err, AllOf(HasSubstr("warning"), HasSubstr(REASON)));
    for (const char* name : {"out.1.exr", "out.2.exr", "out.3.exr"})
        std::filesystem::remove(path(name));
    const ToolRun strict = run_sequence({"--strict"});
    EXPECT_THAT(strict, FailsWith(1, AllOf(HasSubstr("shot.3.png"), HasSubstr("the color tags differ"))));
    EXPECT_THAT(strict.err, Not(HasSubstr("shot.2.png")));
    EXPECT_TRUE(folder.exists("out.2.exr"));
    EXPECT_FALSE(folder.exists("out.3.exr"));
}

} // namespace
