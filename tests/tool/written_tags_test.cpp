// What the written files say about their colors.

#include "tests/tool/written_tags_fixture.h"

namespace {

using testing::ElementsAre;
using testing::FloatEq;
using testing::HasSubstr;
using testing::IsEmpty;

using WrittenTags = WrittenTagsTest;

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

/// Color in "rgba" and in "diffuse", with the tags of ACEScg.
void write_tagged_layers(const std::string& file) {
    Image image = make_image(1, 1, 6, OIIO::TypeHalf, std::vector<float>(6, 0.5f));
    image.spec.channelnames = {"R", "G", "B", "diffuse.R", "diffuse.G", "diffuse.B"};
    image.spec.attribute("colorInteropID", "lin_ap1_scene");
    image.spec.attribute("colorio:ColorSpace", "ACEScg");
    write_image(file, image);
}

TEST_F(WrittenTags, SayUnknownWhereTheUserLeftSomeLayers) {
    write_tagged_layers(path("layers.exr"));
    for (const std::vector<std::string>& choice :
         {std::vector<std::string>{"--layers", "diffuse"}, {"--skip", "rgba"}, {"--skip", "diffuse"}}) {
        std::vector<std::string> arguments = {"convert",  path("layers.exr"), path("out.exr"),
                                              "--from",   "ACEScg",           "--to",
                                              "lin_srgb", "--config",         path("show.ocio")};
        arguments.insert(arguments.end(), choice.begin(), choice.end());
        const ToolRun result = run(arguments);
        ASSERT_THAT(result, Succeeds());
        EXPECT_THAT(
            result.err,
            HasSubstr("only some of its layers were converted: its tag says that the color space is unknown"))
            << choice.back();
        const OIIO::ImageSpec spec = read_image(path("out.exr")).spec;
        EXPECT_EQ(spec.find_attribute("chromaticities"), nullptr) << choice.back();
        EXPECT_EQ(spec.get_string_attribute("colorio:ColorSpace"), "unknown") << choice.back();
        // Newer versions of OpenImageIO write that the color space is unknown.
        EXPECT_THAT(spec.get_string_attribute("colorInteropID"), testing::AnyOf("", "unknown"))
            << choice.back();
    }
}

TEST_F(WrittenTags, OfTheOnlyWrittenLayerDoNotDependOnOthers) {
    write_tagged_layers(path("layers.exr"));
    ASSERT_THAT(run({"convert", path("layers.exr"), path("out.png"), "--from", "ACEScg", "--to",
                     "sRGB - Texture", "--layers", "diffuse", "--config", path("show.ocio")}),
                Succeeds());
    EXPECT_EQ(read_profile("out.png").first, "sRGB");
}

TEST_F(WrittenTags, StayInTheSameSpaceWhereTheUserLeftSomeLayers) {
    write_tagged_layers(path("layers.exr"));
    ASSERT_THAT(run({"convert", path("layers.exr"), path("out.exr"), "--from", "ACEScg", "--to", "ACEScg",
                     "--layers", "diffuse", "--config", path("show.ocio")}),
                Succeeds());
    EXPECT_EQ(read_image(path("out.exr")).spec.get_string_attribute("colorInteropID"), "lin_ap1_scene");
}

} // namespace
