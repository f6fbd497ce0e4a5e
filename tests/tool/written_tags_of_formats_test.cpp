// What written DPX and PNG files and profiles say about their colors.

#include "tests/tool/written_tags_fixture.h"

namespace {

using TagsOfFormats = WrittenTagsTest;

struct DpxCase {
    const char* color_space;
    unsigned int transfer;
    unsigned int colorimetric;
};

TEST_F(TagsOfFormats, OfDpxAreTransferAndColorimetric) {
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

TEST_F(TagsOfFormats, OfDpxAreThoseOfTheInputInTheSameSpace) {
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

TEST_F(TagsOfFormats, OfOpenExrHaveNoProfile) {
    convert("sRGB - Texture", "in.png");
    ASSERT_NE(read_image(path("in.png")).spec.find_attribute("ICCProfile"), nullptr);
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    const ToolRun result = run({"convert", path("in.png"), path("out.exr"), "--from", "sRGB - Texture",
                                "--to", "sRGB - Texture", "--config", path("show.ocio")});
    const std::string printed =
        testing::internal::GetCapturedStdout() + testing::internal::GetCapturedStderr();
    EXPECT_THAT(result, Succeeds());
    EXPECT_THAT(printed, testing::Not(testing::HasSubstr("ICCProfile")))
        << "OpenImageIO prints what it drops";
}

TEST_F(TagsOfFormats, OfDpxLeadBackToTheColorSpace) {
    for (const char* name : {"ACEScg", "paint", "lin_srgb", "Rec.1886 Rec.709 - Display", "Camera Rec.709"}) {
        convert(name, "out.dpx");
        EXPECT_THAT(
            run({"explain", "--image", path("out.dpx"), "lin", "--why", "--config", path("show.ocio")}).out,
            testing::HasSubstr(std::string("source:        ") + name + "\n"));
    }
    convert("ACEScg", "again.dpx", "out.dpx");
    EXPECT_EQ(read_image(path("again.dpx")).spec.get_string_attribute("dpx:Transfer"), "Linear");
    convert("paint", "out.exr", "again.dpx");
    const OIIO::ImageSpec spec = read_image(path("out.exr")).spec;
    EXPECT_EQ(spec.get_string_attribute("colorio:ColorSpace"), "paint");
    EXPECT_EQ(spec.find_attribute("dpx:UserData"), nullptr) << "it was that of the DPX file";
}

TEST_F(TagsOfFormats, OfDpxKeepTheDataOfOtherPrograms) {
    const std::string data = "lens 35 mm";
    OIIO::ImageSpec spec;
    spec.attribute("dpx:UserData", OIIO::TypeDesc(OIIO::TypeDesc::UINT8, static_cast<int>(data.size())),
                   data.data());
    write("in.dpx", OIIO::TypeUInt16, spec);
    convert("ACEScg", "out.dpx", "in.dpx");
    EXPECT_THAT(folder.read("out.dpx"), testing::HasSubstr(data));
    EXPECT_THAT(folder.read("out.dpx"), testing::Not(testing::HasSubstr("ACEScg")));
}

TEST_F(TagsOfFormats, OfDpxDoNotGoToOtherFormats) {
    OIIO::ImageSpec spec;
    spec.attribute("dpx:Transfer", "Printing density");
    write("in.dpx", OIIO::TypeUInt16, spec);
    convert("paint", "out.exr", "in.dpx");
    EXPECT_EQ(read_image(path("out.exr")).spec.find_attribute("dpx:Transfer"), nullptr);
}

TEST_F(TagsOfFormats, OfPngAreCodePoints) {
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

TEST_F(TagsOfFormats, OfPngAreKeptInTheSameSpace) {
    write("in.png", OIIO::TypeUInt8);
    insert_png_chunk(path("in.png"), "cICP", std::string("\x09\x12\x00\x01", 4));
    ASSERT_THAT(run({"convert", path("in.png"), path("out.png"), "--from", "paint", "--to", "paint",
                     "--config", path("show.ocio")}),
                Succeeds());
    EXPECT_EQ(find_chunk("out.png", "cICP"), find_chunk("in.png", "cICP"));
}

TEST_F(TagsOfFormats, AreProfilesOfDisplays) {
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

TEST_F(TagsOfFormats, AreNoProfileOfFormerColors) {
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

TEST_F(TagsOfFormats, ThatAFormatLacksAreNamed) {
    const auto get_notes = [&](const char* color_space, const char* output) {
        const ToolRun result = run({"convert", path("in.exr"), path(output), "--from", "lin", "--to",
                                    color_space, "-d", "uint8", "--config", path("show.ocio")});
        EXPECT_THAT(result, Succeeds());
        return result.err;
    };
    EXPECT_THAT(
        get_notes("paint", "out.tif"),
        testing::HasSubstr("tiff has no tag for the color space 'paint'\nhint: name the color space when "
                           "you read the file\n"));
    EXPECT_THAT(get_notes("paint", "out.tga"), testing::HasSubstr("targa has no tag"));
    EXPECT_THAT(get_notes("paint", "out.png"), testing::Not(testing::HasSubstr("has no tag")));
    for (const char* output : {"out.tif", "out.jpg"}) // which have a profile
        EXPECT_THAT(get_notes("Display P3 - Display", output), testing::Not(testing::HasSubstr("has no tag")))
            << output;
}

TEST_F(TagsOfFormats, OfGrayImagesAreNoProfileOfThreeColors) {
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

} // namespace
