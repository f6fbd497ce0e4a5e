#include <array>

#include "tests/colorio/color_formulas.h"
#include "tests/colorio/library_differences.h"
#include "tests/tool/configs.h"
#include "tests/tool/images.h"
#include "tests/tool/tool_fixture.h"

namespace {

using library_differences::expected;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class ConvertKeeps : public ToolTest {
protected:
    ToolRun convert(const std::string& input, const std::string& output, std::vector<std::string> more = {}) {
        more.insert(more.begin(), {"convert", path(input), path(output), "--from", "sRGB", "--to", "linear"});
        const ToolRun result = run(more);
        EXPECT_THAT(result, Succeeds());
        return result;
    }

    /// Red, green, blue, a depth channel of floats and an id in another layer, in halfs otherwise.
    void write_layers(const std::string& name) {
        Image image = make_image(2, 1, 5, OIIO::TypeHalf,
                                 {0.5f, 0.5f, 0.5f, 1234.567f, 7.0f, 0.25f, 0.25f, 0.25f, 1e6f, 9.0f});
        image.spec.channelnames = {"R", "G", "B", "Z", "matte.id"};
        image.spec.channelformats = {OIIO::TypeHalf, OIIO::TypeHalf, OIIO::TypeHalf, OIIO::TypeFloat,
                                     OIIO::TypeHalf};
        image.spec.z_channel = 3;
        write_image(path(name), image);
    }
};

TEST_F(ConvertKeeps, OtherChannelsWithTheirNamesAndTypes) {
    write_layers("in.exr");
    convert("in.exr", "out.exr");
    const Image before = read_image(path("in.exr"));
    const Image after = read_image(path("out.exr"));
    EXPECT_EQ(after.spec.channelnames, before.spec.channelnames);
    EXPECT_EQ(after.spec.channelformats, before.spec.channelformats);
    for (int x : {0, 1})
        for (const char* channel : {"Z", "matte.id"})
            EXPECT_EQ(after.get(channel, x), before.get(channel, x)) << channel;
    EXPECT_NEAR(after.get("R"), formula::srgb_to_linear(0.5), 1e-4);
}

TEST_F(ConvertKeeps, TheTypesOfOtherChannelsWhenAnotherDepthIsAsked) {
    write_layers("in.exr");
    convert("in.exr", "out.exr", {"-d", "float"});
    const Image after = read_image(path("out.exr"));
    EXPECT_EQ(after.spec.channelformat(after.spec.channelindex("R")), OIIO::TypeFloat);
    EXPECT_EQ(after.spec.channelformat(after.spec.channelindex("Z")), OIIO::TypeFloat);
    EXPECT_EQ(after.spec.channelformat(after.spec.channelindex("matte.id")), OIIO::TypeHalf);
    EXPECT_NEAR(after.get("G", 1), formula::srgb_to_linear(0.25), 5e-6);
}

TEST_F(ConvertKeeps, OnlyColorAndAlphaWhereTheFormatHasNoRoomAndSaysSo) {
    write_layers("in.exr");
    const ToolRun result = convert("in.exr", "out.png");
    EXPECT_THAT(result.err,
                AllOf(HasSubstr("png does not support the channels"), HasSubstr("Z"), HasSubstr("matte.id")));
    EXPECT_THAT(read_image(path("out.png")).spec.channelnames, ElementsAre("R", "G", "B"));
}

TEST_F(ConvertKeeps, ChannelsInAnyOrder) {
    Image image = make_image(1, 1, 4, OIIO::TypeFloat, {0.75f, 0.5f, 42.0f, 0.25f});
    image.spec.channelnames = {"B", "G", "Z", "R"};
    write_image(path("in.exr"), image);
    convert("in.exr", "out.exr");
    const Image after = read_image(path("out.exr"));
    EXPECT_NEAR(after.get("R"), formula::srgb_to_linear(0.25), 5e-6);
    EXPECT_NEAR(after.get("G"), formula::srgb_to_linear(0.5), 5e-6);
    EXPECT_NEAR(after.get("B"), formula::srgb_to_linear(0.75), 5e-6);
    EXPECT_EQ(after.get("Z"), 42.0f);
}

TEST_F(ConvertKeeps, TheDataAndTheDisplayWindow) {
    Image image = make_image(3, 2, 3, OIIO::TypeFloat, std::vector<float>(18, 0.5f));
    image.spec.x = -5;
    image.spec.y = 11;
    image.spec.full_width = 100;
    image.spec.full_height = 50;
    image.spec.full_x = 2;
    write_image(path("in.exr"), image);
    convert("in.exr", "out.exr");
    const OIIO::ImageSpec after = read_image(path("out.exr")).spec;
    EXPECT_EQ(after.roi(), image.spec.roi());
    EXPECT_EQ(after.roi_full(), image.spec.roi_full());
}

TEST_F(ConvertKeeps, TheDisplayWindowWhereTheFormatKnowsNoOther) {
    Image image = make_image(2, 1, 3, OIIO::TypeFloat, std::vector<float>(6, 1.0f));
    image.spec.x = 1;
    image.spec.full_width = 4;
    image.spec.full_height = 2;
    write_image(path("in.exr"), image);
    const ToolRun result = convert("in.exr", "out.png");
    EXPECT_THAT(result.err, HasSubstr("4 x 2"));
    const Image after = read_image(path("out.png"));
    EXPECT_EQ(after.spec.width, 4);
    EXPECT_EQ(after.spec.height, 2);
    const std::array<float, 4> top = {after.get("R", 0), after.get("R", 1), after.get("R", 2),
                                      after.get("R", 3)};
    EXPECT_THAT(top, ElementsAre(0, 1, 1, 0));
    EXPECT_EQ(after.get("R", 1, 1), 0);
}

TEST_F(ConvertKeeps, Metadata) {
    Image image = make_image(1, 1, 3, OIIO::TypeHalf, {0.5f, 0.5f, 0.5f});
    image.spec.attribute("ImageDescription", "a shot");
    image.spec.attribute("show/take", 12);
    image.spec.attribute("compression", "piz");
    write_image(path("in.exr"), image);
    convert("in.exr", "out.exr");
    const OIIO::ImageSpec after = read_image(path("out.exr")).spec;
    EXPECT_EQ(after.get_string_attribute("ImageDescription"), "a shot");
    EXPECT_EQ(after.get_int_attribute("show/take"), 12);
    EXPECT_EQ(after.get_string_attribute("compression"), "piz");
}

void write_with_chromaticities(const std::string& file) {
    Image image = make_image(1, 1, 3, OIIO::TypeFloat, {0.5f, 0.5f, 0.5f});
    const float chromaticities[8] = {0.64f, 0.33f, 0.3f, 0.6f, 0.15f, 0.06f, 0.3127f, 0.329f};
    image.spec.attribute("chromaticities", OIIO::TypeDesc(OIIO::TypeDesc::FLOAT, 8), chromaticities);
    write_image(file, image);
}

TEST_F(ConvertKeeps, WhatDescribesTheColorsInTheirSpace) {
    write_with_chromaticities(path("in.exr"));
    ASSERT_THAT(run({"convert", path("in.exr"), path("out.exr"), "--from", "linear", "--to", "linear"}),
                Succeeds());
    EXPECT_NE(read_image(path("out.exr")).spec.find_attribute("chromaticities"), nullptr);
}

TEST_F(ConvertKeeps, NothingThatDescribedTheFormerColors) {
    write_with_chromaticities(path("in.exr"));
    const ToolRun result =
        run({"convert", path("in.exr"), path("out.exr"), "--from", "linear", "--to", "Cineon"});
    EXPECT_EQ(read_image(path("out.exr")).spec.find_attribute("chromaticities"), nullptr);
    EXPECT_THAT(result.err, HasSubstr("chromaticities"));
}

TEST_F(ConvertKeeps, TheNameOfTheNewColorSpaceInTheFile) {
    write_image(path("in.tif"), make_image(1, 1, 3, OIIO::TypeUInt8, {0.5f, 0.5f, 0.5f}));
    ASSERT_THAT(run({"convert", path("in.tif"), path("out.png"), "--from", "linear", "--to", "sRGB"}),
                Succeeds());
    EXPECT_EQ(read_image(path("out.png")).spec.get_string_attribute("oiio:ColorSpace"),
              expected("sRGB in an image file"));
    convert("in.tif", "linear.png");
    EXPECT_EQ(read_image(path("linear.png")).spec.get_string_attribute("oiio:ColorSpace"),
              expected("linear in an image file"));
}

TEST_F(ConvertKeeps, TheDepthOfTheInputWhereTheFormatHasIt) {
    const std::vector<std::pair<OIIO::TypeDesc, std::string>> cases = {
        {OIIO::TypeUInt8, ".tif"}, {OIIO::TypeUInt16, ".tif"}, {OIIO::TypeFloat, ".tif"},
        {OIIO::TypeHalf, ".exr"},  {OIIO::TypeFloat, ".exr"},  {OIIO::TypeUInt16, ".png"}};
    for (const auto& [depth, extension] : cases) {
        write_image(path("in" + extension), make_image(1, 1, 3, depth, {0.5f, 0.5f, 0.5f}));
        convert("in" + extension, "out" + extension);
        EXPECT_EQ(read_image(path("out" + extension)).spec.format, depth) << extension;
    }
}

TEST_F(ConvertKeeps, TheDepthThatIsAsked) {
    write_image(path("in.exr"), make_image(1, 1, 3, OIIO::TypeHalf, {0.5f, 0.5f, 0.5f}));
    const std::vector<std::pair<std::string, OIIO::TypeDesc>> cases = {
        {"uint8", OIIO::TypeUInt8}, {"uint16", OIIO::TypeUInt16}, {"float", OIIO::TypeFloat}};
    for (const auto& [name, depth] : cases) {
        convert("in.exr", "out.tif", {"-d", name});
        EXPECT_EQ(read_image(path("out.tif")).spec.format, depth);
    }
}

TEST_F(ConvertKeeps, ItsWordAboutTheDepthOrWritesNothing) {
    write_image(path("in.exr"), make_image(1, 1, 3, OIIO::TypeHalf, {0.5f, 0.5f, 0.5f}));
    EXPECT_THAT(
        run({"convert", path("in.exr"), path("out.png"), "--from", "linear", "--to", "sRGB", "-d", "half"}),
        FailsWith(1,
                  AllOf(HasSubstr("out.png"), HasSubstr("png does not support half"), HasSubstr("uint8"))));
    EXPECT_EQ(count_files(), 1u);
}

TEST_F(ConvertKeeps, GrayImagesGray) {
    Image image = make_image(1, 1, 1, OIIO::TypeUInt8, {0.5f});
    image.spec.channelnames = {"Y"};
    write_image(path("in.png"), image);
    convert("in.png", "out.png");
    const Image after = read_image(path("out.png"));
    ASSERT_EQ(after.spec.nchannels, 1);
    EXPECT_NEAR(after.values[0], formula::srgb_to_linear(128.0 / 255), 0.5 / 255);
}

TEST_F(ConvertKeeps, NoGrayWhenTheConversionTints) {
    folder.write("show.ocio", SHOW_CONFIG);
    Image image = make_image(1, 1, 1, OIIO::TypeFloat, {0.25f});
    image.spec.channelnames = {"Y"};
    write_image(path("in.exr"), image);
    ASSERT_THAT(run({"convert", path("in.exr"), path("out.exr"), "--config", path("show.ocio"), "--from",
                     "lin", "--to", "ops|warm"}),
                Succeeds());
    const Image after = read_image(path("out.exr"));
    EXPECT_THAT(after.spec.channelnames, ElementsAre("R", "G", "B"));
    EXPECT_THAT(after.values, ElementsAre(0.5f, 0.25f, 0.25f));
}

TEST_F(ConvertKeeps, QuietWhenNothingIsLost) {
    write_layers("in.exr");
    EXPECT_THAT(convert("in.exr", "out.exr").err, IsEmpty());
}

} // namespace
