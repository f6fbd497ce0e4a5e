// What the written files say about their colors.

#include <algorithm>
#include <cmath>

#include <lcms2.h>

#include "tests/tool/color_tag_files.h"
#include "tests/tool/images.h"
#include "tests/tool/tool_fixture.h"

namespace {

using testing::ElementsAre;
using testing::FloatEq;
using testing::HasSubstr;
using testing::IsEmpty;

class WrittenTags : public ToolTest {
protected:
    WrittenTags() {
        write("in.exr", OIIO::TypeHalf);
        std::string text = "ocio_profile_version: 1\nstrictparsing: true\nroles: {scene_linear: lin}\n"
                           "displays:\n  Monitor:\n    - !<View> {name: sRGB, colorspace: Output - sRGB}\n"
                           "colorspaces:\n";
        for (const char* name :
             {"lin", "paint", "lin_srgb", "ACEScg", "Linear P3-D65", "sRGB - Texture", "Display P3 - Display",
              "Camera Rec.709", "Rec.1886 Rec.709 - Display", "Rec.2100-PQ - Display",
              "Gamma 2.2 Rec.709 - Texture", "ADX10", "Output - sRGB"})
            text += std::string("  - !<ColorSpace> {name: ") + name + "}\n";
        folder.write("show.ocio", text);
    }

    void write(const std::string& name, OIIO::TypeDesc depth, const OIIO::ImageSpec& attributes = {}) {
        Image image = make_image(2, 2, 3, depth, std::vector<float>(12, 0.5f));
        image.spec.extra_attribs = attributes.extra_attribs;
        write_image(path(name), image);
    }

    /// Converts to a color space of the config.
    void convert(const std::string& to, const std::string& output, const std::string& input = "in.exr") {
        const ToolRun result = run({"convert", path(input), path(output), "--from", "lin", "--to", to,
                                    "--config", path("show.ocio")});
        ASSERT_THAT(result, Succeeds());
    }

    unsigned int get_byte(const std::string& name, std::size_t offset) const {
        return static_cast<unsigned char>(folder.read(name).at(offset));
    }

    std::vector<float> get_chromaticities(const std::string& name, int part = 0) const {
        const OIIO::ImageSpec spec = read_image(path(name), part).spec;
        const OIIO::ParamValue* found =
            spec.find_attribute("chromaticities", OIIO::TypeDesc(OIIO::TypeDesc::FLOAT, 8));
        const auto* xy = found ? static_cast<const float*>(found->data()) : nullptr;
        return xy ? std::vector<float>(xy, xy + 8) : std::vector<float>();
    }

    /// What the profile of the file calls itself, and what it makes of code value 0.5 of gray: the Y.
    std::pair<std::string, double> read_profile(const std::string& name) const {
        const OIIO::ImageSpec spec = read_image(path(name)).spec;
        const OIIO::ParamValue* found = spec.find_attribute("ICCProfile");
        if (!found)
            return {"none", 0};
        cmsHPROFILE profile =
            cmsOpenProfileFromMem(found->data(), static_cast<cmsUInt32Number>(found->type().numelements()));
        cmsHPROFILE xyz = cmsCreateXYZProfile();
        cmsHTRANSFORM transform =
            cmsCreateTransform(profile, TYPE_RGB_DBL, xyz, TYPE_XYZ_DBL, INTENT_RELATIVE_COLORIMETRIC, 0);
        const double gray[] = {0.5, 0.5, 0.5};
        double result[3] = {};
        cmsDoTransform(transform, gray, result, 1);
        char text[64] = "";
        cmsGetProfileInfoASCII(profile, cmsInfoDescription, "en", "US", text, sizeof text);
        cmsDeleteTransform(transform);
        cmsCloseProfile(xyz);
        cmsCloseProfile(profile);
        return {text, result[1]};
    }

    /// The data of a chunk of a PNG file with its name before and its CRC behind; empty for none.
    std::string find_chunk(const std::string& name, const std::string& type) const {
        const std::string file = folder.read(name);
        for (std::size_t at = 8; at + 12 <= file.size();) {
            std::size_t length = 0;
            for (std::size_t i = 0; i < 4; ++i)
                length = length << 8 | static_cast<unsigned char>(file[at + i]);
            if (file.compare(at + 4, 4, type) == 0)
                return file.substr(at + 4, length + 8);
            at += length + 12;
        }
        return "";
    }
};

TEST_F(WrittenTags, OfExrAreTheChromaticitiesOfKnownPrimaries) {
    convert("ACEScg", "ap1.exr");
    EXPECT_THAT(get_chromaticities("ap1.exr"),
                ElementsAre(FloatEq(0.713f), FloatEq(0.293f), FloatEq(0.165f), FloatEq(0.830f),
                            FloatEq(0.128f), FloatEq(0.044f), FloatEq(0.32168f), FloatEq(0.33767f)))
        << "SMPTE/AMPAS S-2014-004";
    convert("lin_srgb", "rec709.exr", "ap1.exr");
    EXPECT_THAT(get_chromaticities("rec709.exr"),
                ElementsAre(FloatEq(0.64f), FloatEq(0.33f), FloatEq(0.30f), FloatEq(0.60f), FloatEq(0.15f),
                            FloatEq(0.06f), FloatEq(0.3127f), FloatEq(0.3290f)))
        << "ITU-R BT.709";
    convert("Linear P3-D65", "p3.exr");
    EXPECT_THAT(get_chromaticities("p3.exr"),
                ElementsAre(FloatEq(0.680f), FloatEq(0.320f), FloatEq(0.265f), FloatEq(0.690f),
                            FloatEq(0.150f), FloatEq(0.060f), FloatEq(0.3127f), FloatEq(0.3290f)))
        << "SMPTE EG 432-1";
    for (const char* unknown : {"paint", "sRGB - Texture", "ADX10"}) {
        convert(unknown, "unknown.exr", "ap1.exr");
        EXPECT_THAT(get_chromaticities("unknown.exr"), IsEmpty()) << unknown;
    }
}

TEST_F(WrittenTags, OfExrAreTheInteropId) {
    const auto get_id = [&](const char* to) {
        convert(to, "out.exr");
        return std::string(read_image(path("out.exr")).spec.get_string_attribute("colorInteropID"));
    };
    EXPECT_EQ(get_id("ACEScg"), "lin_ap1_scene");
    EXPECT_EQ(get_id("sRGB - Texture"), "srgb_rec709_scene");
    EXPECT_EQ(get_id("Display P3 - Display"), "srgb_p3d65_display");
    for (const char* without : {"paint", "ADX10", "Camera Rec.709"})
        EXPECT_EQ(get_id(without), "") << without;
}

struct DpxCase {
    const char* color_space;
    unsigned int transfer;
    unsigned int colorimetric;
};

TEST_F(WrittenTags, OfDpxAreTransferAndColorimetric) {
    // SMPTE ST 268: 1 printing density, 2 linear, 4 unspecified video, 6 ITU-R 709-4, all bits set for
    // undefined.
    const DpxCase cases[] = {{"ADX10", 1, 1},          {"lin_srgb", 2, 6},
                             {"ACEScg", 2, 255},       {"Camera Rec.709", 6, 6},
                             {"sRGB - Texture", 4, 6}, {"Rec.1886 Rec.709 - Display", 6, 6},
                             {"paint", 255, 255},      {"Display P3 - Display", 255, 255}};
    OIIO::ImageSpec stale;
    stale.attribute("dpx:Transfer", "Printing density");
    stale.attribute("dpx:Colorimetric", "Printing density");
    write("in.dpx", OIIO::TypeUInt16, stale);
    for (const char* input : {"in.exr", "in.dpx"})
        for (const DpxCase& known : cases) {
            convert(known.color_space, "out.dpx", input);
            EXPECT_EQ(get_byte("out.dpx", 801), known.transfer) << known.color_space << " from " << input;
            EXPECT_EQ(get_byte("out.dpx", 802), known.colorimetric) << known.color_space << " from " << input;
        }
}

TEST_F(WrittenTags, OfDpxAreThoseOfTheInputInTheSameSpace) {
    OIIO::ImageSpec spec;
    spec.attribute("dpx:Transfer", "Logarithmic");
    spec.attribute("dpx:Colorimetric", "User defined");
    write("in.dpx", OIIO::TypeUInt16, spec);
    ASSERT_THAT(run({"convert", path("in.dpx"), path("out.dpx"), "--from", "paint", "--to", "paint",
                     "--config", path("show.ocio")}),
                Succeeds());
    EXPECT_EQ(get_byte("out.dpx", 801), 3u);
    EXPECT_EQ(get_byte("out.dpx", 802), 0u);
}

TEST_F(WrittenTags, OfDpxDoNotGoToOtherFormats) {
    OIIO::ImageSpec spec;
    spec.attribute("dpx:Transfer", "Printing density");
    write("in.dpx", OIIO::TypeUInt16, spec);
    convert("paint", "out.exr", "in.dpx");
    EXPECT_EQ(read_image(path("out.exr")).spec.find_attribute("dpx:Transfer"), nullptr);
}

TEST_F(WrittenTags, OfPngAreCodePoints) {
    // ITU-T H.273: primaries, transfer, matrix, range.
    const std::pair<const char*, std::vector<int>> cases[] = {
        {"sRGB - Texture", {1, 13, 0, 1}}, {"Display P3 - Display", {12, 13, 0, 1}},
        {"Camera Rec.709", {1, 1, 0, 1}},  {"Rec.1886 Rec.709 - Display", {1, 1, 0, 1}},
        {"lin_srgb", {1, 8, 0, 1}},        {"Gamma 2.2 Rec.709 - Texture", {1, 4, 0, 1}},
        {"Linear P3-D65", {12, 8, 0, 1}},  {"Rec.2100-PQ - Display", {9, 16, 0, 1}},
    };
    for (const auto& [name, numbers] : cases) {
        convert(name, "out.png");
        const std::string chunk = find_chunk("out.png", "cICP");
        ASSERT_EQ(chunk.size(), 12u) << name;
        EXPECT_TRUE(std::equal(numbers.begin(), numbers.end(), chunk.begin() + 4)) << name;
        EXPECT_EQ(read_image(path("out.png")).values, std::vector<float>(12, 128.0f / 255));
    }
    write("reference.png", OIIO::TypeUInt8);
    insert_png_chunk(path("reference.png"), "cICP", std::string("\x09\x10\x00\x01", 4));
    EXPECT_EQ(find_chunk("out.png", "cICP"), find_chunk("reference.png", "cICP")) << "with its CRC";
    for (const char* unknown : {"paint", "ACEScg"}) {
        convert(unknown, "out.png", "reference.png");
        EXPECT_EQ(find_chunk("out.png", "cICP"), "") << unknown;
    }
}

TEST_F(WrittenTags, OfPngAreKeptInTheSameSpace) {
    write("in.png", OIIO::TypeUInt8);
    insert_png_chunk(path("in.png"), "cICP", std::string("\x09\x12\x00\x01", 4));
    ASSERT_THAT(run({"convert", path("in.png"), path("out.png"), "--from", "paint", "--to", "paint",
                     "--config", path("show.ocio")}),
                Succeeds());
    EXPECT_EQ(find_chunk("out.png", "cICP"), find_chunk("in.png", "cICP"));
}

TEST_F(WrittenTags, AreProfilesOfDisplays) {
    struct Profile {
        const char* color_space;
        const char* description;
        double half; ///< The linear value of code value 0.5.
    };
    const Profile cases[] = {{"sRGB - Texture", "sRGB", std::pow((0.5 + 0.055) / 1.055, 2.4)},
                             {"Display P3 - Display", "Display P3", std::pow((0.5 + 0.055) / 1.055, 2.4)},
                             {"Camera Rec.709", "Rec.709", std::pow((0.5 + 0.099) / 1.099, 1 / 0.45)},
                             {"Rec.1886 Rec.709 - Display", "Rec.1886", std::pow(0.5, 2.4)}};
    for (const char* output : {"out.png", "out.jpg", "out.tif"})
        for (const Profile& known : cases) {
            convert(known.color_space, output);
            const auto [description, half] = read_profile(output);
            EXPECT_EQ(description, known.description) << output;
            EXPECT_NEAR(half, known.half, 1e-4) << output << " " << known.color_space;
        }
}

TEST_F(WrittenTags, AreNoProfileOfFormerColors) {
    const std::vector<std::uint8_t> profile = make_icc_profile(SRGB_COLORANTS, 0);
    OIIO::ImageSpec spec;
    spec.attribute("ICCProfile", OIIO::TypeDesc(OIIO::TypeDesc::UINT8, static_cast<int>(profile.size())),
                   profile.data());
    write("in.tif", OIIO::TypeUInt8, spec);
    for (const char* output : {"out.png", "out.jpg", "out.tif"}) {
        convert("paint", output, "in.tif");
        EXPECT_EQ(read_profile(output).first, "none") << output;
        convert("Display P3 - Display", output, "in.tif");
        EXPECT_EQ(read_profile(output).first, "Display P3") << output;
    }
}

TEST_F(WrittenTags, OfGrayImagesAreNoProfileOfThreeColors) {
    Image gray = make_image(1, 1, 1, OIIO::TypeUInt8, {0.5f});
    gray.spec.channelnames = {"Y"};
    write_image(path("gray.png"), gray);
    for (const char* output : {"out.png", "out.jpg", "out.tif"}) {
        convert("sRGB - Texture", output, "gray.png");
        const Image written = read_image(path(output));
        EXPECT_EQ(written.spec.nchannels, 1) << output;
        EXPECT_EQ(written.spec.find_attribute("ICCProfile"), nullptr) << output;
    }
}

TEST_F(WrittenTags, OfAViewAreThoseOfItsColorSpace) {
    ASSERT_THAT(run({"convert", path("in.exr"), path("out.png"), "--from", "lin", "--view", "Monitor.sRGB",
                     "--config", path("show.ocio")}),
                Succeeds());
    EXPECT_EQ(read_profile("out.png").first, "sRGB");
    EXPECT_EQ(find_chunk("out.png", "cICP").substr(4, 2), std::string("\x01\x0d", 2));
}

TEST_F(WrittenTags, OfTheBuiltInConfigAreKnown) {
    ASSERT_THAT(
        run({"convert", path("in.exr"), path("out.png"), "--from", "linear", "--view", "Tavelion.sRGB"}),
        Succeeds());
    EXPECT_EQ(read_profile("out.png").first, "sRGB");
    ASSERT_THAT(run({"convert", path("in.exr"), path("out.dpx"), "--from", "linear", "--to", "Cineon"}),
                Succeeds());
    EXPECT_EQ(get_byte("out.dpx", 801), 1u);
    EXPECT_EQ(get_byte("out.dpx", 802), 1u);
}

TEST_F(WrittenTags, LeadBackToTheColorSpace) {
    for (const char* name :
         {"sRGB - Texture", "Display P3 - Display", "Camera Rec.709", "Rec.1886 Rec.709 - Display"})
        for (const char* output : {"out.jpg", "out.tif"}) {
            convert(name, output);
            EXPECT_THAT(
                run({"explain", "--image", path(output), "lin", "--why", "--config", path("show.ocio")}).out,
                HasSubstr(std::string("source:        ") + name + "\n"))
                << output;
        }
    for (const char* name : {"ACEScg", "lin_srgb"}) {
        convert(name, "out.exr");
        EXPECT_THAT(run({"explain", "--image", path("out.exr"), "lin", "--config", path("show.ocio")}).err,
                    HasSubstr(name));
    }
}

TEST_F(WrittenTags, AreTheSameBytesEveryTime) {
    for (const char* output : {"out.png", "out.jpg"}) {
        convert("Display P3 - Display", output);
        const std::string first = folder.read(output);
        convert("Display P3 - Display", output);
        EXPECT_EQ(folder.read(output), first) << output;
    }
}

/// Parts of that name, of one pixel.
std::vector<Image> make_parts(std::initializer_list<const char*> names) {
    std::vector<Image> parts;
    for (const char* name : names) {
        parts.push_back(make_image(1, 1, 3, OIIO::TypeHalf, {0.5f, 0.5f, 0.5f}));
        parts.back().spec.attribute("oiio:subimagename", name);
    }
    return parts;
}

TEST_F(WrittenTags, OfColorAreSharedWithPartsOfData) {
    write_image(path("parts.exr"), make_parts({"normals", "beauty", "depth"}));
    convert("ACEScg", "out.exr", "parts.exr");
    const std::vector<float> ap1 = get_chromaticities("out.exr", 1);
    EXPECT_EQ(ap1.size(), 8u);
    EXPECT_EQ(get_chromaticities("out.exr", 0), ap1) << "OpenEXR writes no file whose parts differ";
    EXPECT_EQ(get_chromaticities("out.exr", 2), ap1);
}

TEST_F(WrittenTags, ThatDifferBetweenPartsOfColorAreLeftOutWithANote) {
    write_image(path("parts.exr"), make_parts({"beauty", "glow"}));
    const ToolRun result = run({"convert", path("parts.exr"), path("out.exr"), "--from", "lin", "--to",
                                "ACEScg", "--skip", "glow", "--config", path("show.ocio")});
    ASSERT_THAT(result, Succeeds());
    EXPECT_THAT(result.err, HasSubstr("does not store different chromaticities in one file"));
    EXPECT_THAT(get_chromaticities("out.exr", 0), IsEmpty());
    EXPECT_THAT(get_chromaticities("out.exr", 1), IsEmpty());
}

} // namespace
