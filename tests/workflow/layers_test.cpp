// The color layers of images are converted, data is kept bit for bit.

#include "tests/tool/images.h"
#include "tests/workflow/layer_fixture.h"

namespace {

using diagnostics::Code;
using OIIO::TypeFloat;
using OIIO::TypeHalf;
using OIIO::TypeUInt32;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Names = std::vector<std::string>;

constexpr double TOLERANCE = 1e-6;

class Layers : public LayerTest {
protected:
    void expect_kept(const NativeImage& before, const NativeImage& after, const Names& channels) {
        for (const std::string& channel : channels) {
            EXPECT_EQ(after.get_bits(channel), before.get_bits(channel)) << channel;
            EXPECT_EQ(after.spec.channelformat(after.spec.channelindex(channel)),
                      before.spec.channelformat(before.spec.channelindex(channel)))
                << channel;
        }
    }

    static NativeImage make_color(const Names& channels, float value, OIIO::TypeDesc type = TypeFloat) {
        ChannelTypes types;
        for (const std::string& channel : channels)
            types.emplace_back(channel, type);
        NativeImage image = make_native_image(3, 2, types);
        for (const std::string& channel : channels)
            image.fill(channel, value);
        return image;
    }

    static NativeImage make_part(const std::string& name, const Names& channels, float value) {
        NativeImage part = make_color(channels, value);
        part.spec.attribute("oiio:subimagename", name);
        return part;
    }

    void write(const NativeImage& image) { write_native(folder.file("in.exr"), {image}); }
    NativeImage read(int subimage = 0) const { return read_native(folder.file("out.exr"), subimage); }
};

/// Color layers of two types, and data in channels of all types and under all names.
NativeImage make_rich_image() {
    NativeImage image = make_native_image(5, 4,
                                          {{"R", TypeHalf},
                                           {"G", TypeHalf},
                                           {"B", TypeHalf},
                                           {"Z", TypeFloat},
                                           {"id", TypeUInt32},
                                           {"diffuse.R", TypeFloat},
                                           {"diffuse.G", TypeFloat},
                                           {"diffuse.B", TypeFloat},
                                           {"N.X", TypeHalf},
                                           {"N.Y", TypeHalf},
                                           {"N.Z", TypeHalf},
                                           {"normal.R", TypeFloat},
                                           {"normal.G", TypeFloat},
                                           {"normal.B", TypeFloat},
                                           {"matteless00.R", TypeFloat},
                                           {"matteless00.G", TypeFloat},
                                           {"matteless00.B", TypeFloat},
                                           {"matteless00.A", TypeFloat},
                                           {"ids.R", TypeUInt32},
                                           {"ids.G", TypeUInt32},
                                           {"ids.B", TypeUInt32},
                                           {"beauty.left.R", TypeHalf},
                                           {"beauty.left.G", TypeHalf},
                                           {"beauty.left.B", TypeHalf}});
    image.spec.attribute("cryptomatte/0a1b2c3/name", "matteless");
    image.spec.attribute("cryptomatte/0a1b2c3/manifest", "{\"a\":\"3f800000\"}");
    std::uint32_t seed = 1;
    for (const std::string& channel : image.spec.channelnames)
        image.fill_bits(channel, seed++);
    for (const char* layer : {"", "diffuse.", "beauty.left."}) {
        image.fill(layer + std::string("R"), 0.25f);
        image.fill(layer + std::string("G"), 0.5f);
        image.fill(layer + std::string("B"), 0.75f);
    }
    return image;
}

TEST_F(Layers, OfColorAreConvertedAndDataIsKeptBitForBit) {
    const NativeImage before = make_rich_image();
    write(before);
    const workflow::ImageReport report = convert();
    const NativeImage after = read();
    EXPECT_EQ(after.spec.channelnames, read_native(folder.file("in.exr")).spec.channelnames);
    expect_kept(before, after,
                {"Z", "id", "N.X", "N.Y", "N.Z", "normal.R", "normal.G", "normal.B", "matteless00.R",
                 "matteless00.G", "matteless00.B", "matteless00.A", "ids.R", "ids.G", "ids.B"});
    for (const char* layer : {"", "diffuse.", "beauty.left."})
        for (const auto& [channel, value] :
             {std::pair("R", 0.25), std::pair("G", 0.5), std::pair("B", 0.75)}) {
            const double tolerance = layer[0] == 'd' ? TOLERANCE : square(value) / 2048;
            EXPECT_NEAR(after.get(std::string(layer) + channel, 19), square(value), tolerance)
                << layer << channel;
        }
    EXPECT_EQ(after.spec.channelformat(after.spec.channelindex("beauty.left.G")), TypeHalf);
    EXPECT_EQ(after.spec.get_string_attribute("cryptomatte/0a1b2c3/manifest"), "{\"a\":\"3f800000\"}");
    EXPECT_THAT(report.layers.converted, testing::UnorderedElementsAre("rgba", "diffuse", "beauty.left"));
    EXPECT_THAT(workflow::describe(report.layers),
                AllOf(HasSubstr("normal (data by name)"), HasSubstr("matteless00 (cryptomatte)"),
                      HasSubstr("ids (integers)"), HasSubstr("N (data)")));
    EXPECT_THAT(report.notes, IsEmpty());
}

TEST_F(Layers, OfPartsFollowTheSameRule) {
    write_native(folder.file("in.exr"),
                 {make_part("beauty", {"R", "G", "B"}, 0.5f), make_part("normals", {"R", "G", "B"}, 0.3f),
                  make_part("crypto_object00", {"R", "G", "B", "A"}, 0.3f), make_part("depth", {"Z"}, 77.0f),
                  make_part("aovs", {"diffuse.R", "diffuse.G", "diffuse.B", "P.R", "P.G", "P.B"}, 0.5f)});
    const workflow::ImageReport report = convert();
    EXPECT_NEAR(read(0).get("R", 5), 0.25, TOLERANCE);
    EXPECT_EQ(read(1).get("R", 5), 0.3f);
    EXPECT_EQ(read(2).get("R", 5), 0.3f);
    EXPECT_EQ(read(3).get("Z", 5), 77.0f);
    EXPECT_NEAR(read(4).get("diffuse.R", 5), 0.25, TOLERANCE);
    EXPECT_EQ(read(4).get("P.R", 5), 0.5f);
    EXPECT_EQ(workflow::describe(report.layers),
              "converted beauty, aovs:diffuse; left normals, crypto_object00 (data by name); depth (data); "
              "aovs:P (data by name)");
}

TEST_F(Layers, OfPartsOfOtherSizesAndOffsetsAreConverted) {
    NativeImage beauty = make_part("beauty", {"R", "G", "B"}, 0.5f);
    NativeImage glow = make_part("glow", {"R", "G", "B"}, 0.25f);
    beauty.spec.full_width = glow.spec.full_width = 100;
    beauty.spec.full_height = glow.spec.full_height = 50;
    beauty.spec.x = -7;
    glow.spec.x = 90;
    glow.spec.y = 48;
    write_native(folder.file("in.exr"), {beauty, glow});
    convert();
    EXPECT_EQ(read(0).spec.roi(), beauty.spec.roi());
    EXPECT_NEAR(read(0).get("B", 5), 0.25, TOLERANCE);
    EXPECT_EQ(read(1).spec.roi(), glow.spec.roi());
    EXPECT_EQ(read(1).spec.roi_full(), glow.spec.roi_full());
    EXPECT_NEAR(read(1).get("B", 5), 0.0625, TOLERANCE);
}

TEST_F(Layers, OfPartsInTilesAndInScanlinesAreWrittenInScanlines) {
    Image tiled = make_image(40, 24, 3, TypeFloat, std::vector<float>(40 * 24 * 3, 0.5f));
    const Image plain = tiled;
    tiled.spec.tile_width = tiled.spec.tile_height = 16;
    write_image(folder.file("in.tif"), {plain, tiled});
    workflow::ConversionRequest request;
    request.from = "lin";
    request.to = "squared";
    const workflow::Conversion conversion(session, request);
    const workflow::ImageReport report =
        workflow::convert_image(conversion, folder.file("in.tif"), folder.file("out.exr"));
    EXPECT_THAT(report.notes, ElementsAre(HasSubstr("all parts are written in scanlines")));
    EXPECT_THAT(report.layers.converted, ElementsAre("part 1", "part 2"));
    for (int part : {0, 1})
        EXPECT_NEAR(read_image(folder.file("out.exr"), part).get("B", 39, 23), 0.25, TOLERANCE);
}

TEST_F(Layers, AreChosenByName) {
    write(make_color(
        {"R", "G", "B", "diffuse.R", "diffuse.G", "diffuse.B", "normal.R", "normal.G", "normal.B"}, 0.5f));
    const workflow::ImageReport report = convert("squared", make_options({"diffuse", "normal"}));
    EXPECT_EQ(read().get("R"), 0.5f);
    EXPECT_EQ(read().get("diffuse.R"), 0.25f);
    EXPECT_EQ(read().get("normal.R"), 0.25f);
    EXPECT_EQ(workflow::describe(report.layers), "converted diffuse, normal; left rgba (not chosen)");
}

TEST_F(Layers, AreAllColorOnesForAll) {
    write(make_color(
        {"R", "G", "B", "diffuse.R", "diffuse.G", "diffuse.B", "normal.R", "normal.G", "normal.B"}, 0.5f));
    convert("squared", make_options({"all"}));
    EXPECT_EQ(read().get("R"), 0.25f);
    EXPECT_EQ(read().get("diffuse.R"), 0.25f);
    EXPECT_EQ(read().get("normal.R"), 0.5f);
    convert("squared", make_options({"all", "normal"}));
    EXPECT_EQ(read().get("R"), 0.25f);
    EXPECT_EQ(read().get("normal.R"), 0.25f);
}

TEST_F(Layers, AreSkippedByName) {
    write(make_color({"R", "G", "B", "diffuse.R", "diffuse.G", "diffuse.B"}, 0.5f));
    const workflow::ImageReport report = convert("squared", make_options({}, {}, {"diffuse"}));
    EXPECT_EQ(read().get("R"), 0.25f);
    EXPECT_EQ(read().get("diffuse.R"), 0.5f);
    EXPECT_EQ(workflow::describe(report.layers), "converted rgba; left diffuse (skipped)");
}

TEST_F(Layers, AreChosenByPart) {
    write_native(folder.file("in.exr"),
                 {make_part("beauty", {"R", "G", "B"}, 0.5f), make_part("glow", {"R", "G", "B"}, 0.5f),
                  make_part("sky", {"R", "G", "B"}, 0.5f)});
    convert("squared", make_options({}, {"glow", "3"}, {"sky"}));
    EXPECT_EQ(read(0).get("R"), 0.5f);
    EXPECT_EQ(read(1).get("R"), 0.25f);
    EXPECT_EQ(read(2).get("R"), 0.5f);
    convert("squared", make_options({"sky"}));
    EXPECT_EQ(read(0).get("R"), 0.5f);
    EXPECT_EQ(read(2).get("R"), 0.25f);
}

TEST_F(Layers, WithUnknownNamesAreErrorsThatListThose) {
    write_native(folder.file("in.exr"),
                 {make_part("beauty", {"R", "G", "B"}, 0.5f), make_part("specular", {"R", "G", "B"}, 0.5f)});
    const std::string there = folder.write("out.exr", "what was there");
    for (const workflow::ImageOptions& options :
         {make_options({"speculer"}), make_options({}, {"speculer"}), make_options({}, {}, {"speculer"})}) {
        const diagnostics::Diagnostic failure = failure_of([&] { convert("squared", options); });
        EXPECT_EQ(failure.code, Code::LAYER_UNKNOWN);
        EXPECT_THAT(failure.message, AllOf(HasSubstr("in.exr"), HasSubstr("'speculer'")));
        EXPECT_EQ(failure.hint, "did you mean 'specular'? it has beauty, specular");
    }
    EXPECT_EQ(folder.read("out.exr"), "what was there");
}

TEST_F(Layers, ThatCannotBeConvertedAreErrorsWhenTheyAreNamed) {
    write(make_rich_image());
    for (const auto& [layer, reason] :
         {std::pair("N", "no color channels"), std::pair("Z", "no color channels"),
          std::pair("ids", "integers"), std::pair("matteless00", "cryptomatte")}) {
        const diagnostics::Diagnostic failure =
            failure_of([&, name = layer] { convert("squared", make_options({name})); });
        EXPECT_EQ(failure.code, Code::IMAGE_UNSUPPORTED) << layer;
        EXPECT_THAT(failure.message, AllOf(HasSubstr("'" + std::string(layer) + "'"), HasSubstr(reason)));
    }
    EXPECT_FALSE(folder.exists("out.exr"));
}

TEST_F(Layers, OfDataAloneAreRefusedWithTheReasons) {
    write(make_color({"normal.R", "normal.G", "normal.B", "Z"}, 0.5f));
    const diagnostics::Diagnostic failure = failure_of([&] { convert(); });
    EXPECT_THAT(failure.message, HasSubstr("no color channels to convert: Z (data); normal (data by name)"));
    EXPECT_THAT(failure.hint, HasSubstr("where a layer is named: normal"));
}

TEST_F(Layers, OfOneColorAreConvertedWhereTheOthersDoNotMatter) {
    for (const char* channel : {"R", "G", "B"}) {
        write(make_color({channel}, 0.5f));
        const workflow::ImageReport report = convert();
        EXPECT_THAT(read().spec.channelnames, ElementsAre(channel));
        EXPECT_NEAR(read().get(channel, 5), 0.25, TOLERANCE);
        EXPECT_EQ(workflow::describe(report.layers), "");
    }
}

TEST_F(Layers, OfOneColorGetTheConversionOfTheirChannel) {
    write(make_color({"R"}, 0.5f));
    convert("warm");
    EXPECT_EQ(read().get("R"), 1.0f);
    write(make_color({"G"}, 0.5f));
    convert("warm");
    EXPECT_EQ(read().get("G"), 0.5f);
}

TEST_F(Layers, OfOneColorAreRefusedWhereTheOthersMatter) {
    write(make_color({"R"}, 0.5f));
    EXPECT_THAT(failure_of([&] { convert("swapped"); }).message,
                AllOf(HasSubstr("no color channels to convert"),
                      HasSubstr("R (the conversion mixes it with missing channels)")));
    write(make_color({"mask.R"}, 0.5f));
    EXPECT_THAT(failure_of([&] { convert("swapped", make_options({"mask"})); }).message,
                HasSubstr("not all of red, green and blue"));
    convert("squared", make_options({"mask"}));
    EXPECT_EQ(read().get("mask.R"), 0.25f);
}

TEST_F(Layers, OfGrayBecomeRedGreenAndBlueWhereTheConversionTints) {
    write(make_color({"Y", "fog.Y"}, 0.5f));
    convert();
    EXPECT_THAT(read().spec.channelnames, testing::UnorderedElementsAre("Y", "fog.Y"));
    EXPECT_EQ(read().get("fog.Y"), 0.25f);
    convert("warm");
    EXPECT_THAT(read().spec.channelnames,
                testing::UnorderedElementsAre("R", "G", "B", "fog.R", "fog.G", "fog.B"));
    EXPECT_EQ(read().get("fog.R"), 1.0f);
    EXPECT_EQ(read().get("fog.G"), 0.5f);
}

TEST_F(Layers, AreDividedByTheirAlphaOrThatAroundThem) {
    NativeImage image = make_color({"R", "G", "B", "A", "own.R", "own.G", "own.B", "own.A", "none.R",
                                    "none.G", "none.B", "own.inner.R", "own.inner.G", "own.inner.B"},
                                   0.2f);
    image.fill("A", 0.5f);
    image.fill("own.A", 0.25f);
    write(image);
    convert();
    const NativeImage after = read();
    EXPECT_NEAR(after.get("R", 5), square(0.2 / 0.5) * 0.5, TOLERANCE);
    EXPECT_NEAR(after.get("none.G", 5), square(0.2 / 0.5) * 0.5, TOLERANCE);
    EXPECT_NEAR(after.get("own.B", 5), square(0.2 / 0.25) * 0.25, TOLERANCE);
    EXPECT_NEAR(after.get("own.inner.R", 5), square(0.2 / 0.25) * 0.25, TOLERANCE);
    expect_kept(image, after, {"A", "own.A"});

    convert("squared", make_options({"none"})); // alone, it still has the alpha of the main color
    EXPECT_NEAR(read().get("none.G", 5), square(0.2 / 0.5) * 0.5, TOLERANCE);
    EXPECT_EQ(read().get("R"), 0.2f);
}

TEST_F(Layers, OfAnotherViewAreNotDividedByTheAlphaOfTheFirst) {
    NativeImage image =
        make_color({"R", "G", "B", "A", "left.R", "left.G", "left.B", "left.Z", "disparityL.x"}, 0.2f);
    const char* const views[] = {"right", "left"};
    image.spec.attribute("multiView", OIIO::TypeDesc(OIIO::TypeDesc::STRING, 2), views);
    image.fill("A", 0.5f);
    write(image);
    convert();
    EXPECT_NEAR(read().get("R", 5), square(0.2 / 0.5) * 0.5, TOLERANCE);
    EXPECT_NEAR(read().get("left.R", 5), square(0.2), TOLERANCE);
    expect_kept(image, read(), {"A", "left.Z", "disparityL.x"});
}

TEST_F(Layers, OfPartsWithoutAlphaAreDividedByThatOfAPartLikeThem) {
    NativeImage glow = make_part("glow", {"R", "G", "B"}, 0.2f);
    NativeImage beauty = make_part("beauty", {"R", "G", "B", "A"}, 0.2f);
    NativeImage moved = make_part("moved", {"R", "G", "B"}, 0.2f);
    NativeImage other_view = make_part("other", {"R", "G", "B"}, 0.2f);
    for (int pixel = 0; pixel < 6; ++pixel)
        beauty.set("A", pixel, 0.25f + 0.125f * static_cast<float>(pixel));
    moved.spec.x = 1;
    moved.spec.full_width = beauty.spec.full_width = glow.spec.full_width = other_view.spec.full_width = 9;
    other_view.spec.attribute("view", "left");
    write_native(folder.file("in.exr"), {glow, beauty, moved, other_view});
    convert();
    for (int pixel = 0; pixel < 6; ++pixel) {
        const double alpha = 0.25 + 0.125 * pixel;
        EXPECT_NEAR(read(0).get("G", pixel), square(0.2 / alpha) * alpha, TOLERANCE);
        EXPECT_NEAR(read(1).get("G", pixel), square(0.2 / alpha) * alpha, TOLERANCE);
        EXPECT_NEAR(read(2).get("G", pixel), square(0.2), TOLERANCE);
        EXPECT_NEAR(read(3).get("G", pixel), square(0.2), TOLERANCE);
    }
    EXPECT_THAT(read(0).spec.channelnames, ElementsAre("R", "G", "B"));

    workflow::ImageOptions options;
    options.alpha_rule = image::AlphaRule::DO_NOT_DIVIDE;
    convert("squared", options);
    EXPECT_NEAR(read(0).get("G"), square(0.2), TOLERANCE);
}

TEST_F(Layers, OfPagesHaveNothingToDoWithEachOther) {
    write_image(folder.file("in.tif"), {make_image(1, 1, 4, TypeFloat, {0.2f, 0.2f, 0.2f, 0.5f}),
                                        make_image(1, 1, 3, TypeFloat, {0.2f, 0.2f, 0.2f})});
    workflow::ConversionRequest request;
    request.from = "lin";
    request.to = "squared";
    const workflow::Conversion conversion(session, request);
    workflow::convert_image(conversion, folder.file("in.tif"), folder.file("out.tif"));
    EXPECT_NEAR(read_image(folder.file("out.tif"), 0).get("R"), square(0.2 / 0.5) * 0.5, TOLERANCE);
    EXPECT_NEAR(read_image(folder.file("out.tif"), 1).get("R"), square(0.2), TOLERANCE);
}

TEST_F(Layers, WithAlphaOfZeroEverywhereAreNoted) {
    NativeImage image = make_color({"R", "G", "B", "A", "own.R", "own.G", "own.B", "own.A"}, 0.5f);
    image.fill("own.A", 0.0f);
    write(image);
    EXPECT_THAT(convert().notes,
                ElementsAre("the alpha of own is 0 everywhere: its color is converted as it is"));
    EXPECT_EQ(read().get("own.R"), 0.25f);
    image.set("own.A", 5, 0.001f);
    write(image);
    EXPECT_THAT(convert().notes, IsEmpty());
}

TEST_F(Layers, OfDataThatGetAnotherTypeAreNoted) {
    write(make_rich_image());
    EXPECT_THAT(
        convert("squared", {}, "out.tif").notes,
        testing::Contains(AllOf(HasSubstr("tiff has one type for all channels"), HasSubstr("Z, id"))));
}

TEST_F(Layers, GiveAFormatWithoutThemTheFirstThatIsChosen) {
    NativeImage image = make_color({"R", "G", "B", "diffuse.R", "diffuse.G", "diffuse.B"}, 0.25f);
    for (const char* channel : {"diffuse.R", "diffuse.G", "diffuse.B"})
        image.fill(channel, 0.5f);
    write(image);
    workflow::ImageOptions options = make_options({"diffuse"});
    options.depth = "uint16";
    const workflow::ImageReport report = convert("squared", options, "out.png");
    const Image after = read_image(folder.file("out.png"));
    EXPECT_THAT(after.spec.channelnames, ElementsAre("R", "G", "B"));
    EXPECT_NEAR(after.get("R"), 0.25, 1.0 / 65535);
    EXPECT_THAT(report.layers.converted, ElementsAre("diffuse"));
    EXPECT_THAT(report.notes, ElementsAre(HasSubstr("png does not support the channels R, G, B")));
}

TEST_F(Layers, GiveAFormatOfOnePartTheFirstPartThatIsChosen) {
    write_native(folder.file("in.exr"),
                 {make_part("depth", {"Z"}, 1.0f), make_part("beauty", {"R", "G", "B"}, 0.25f),
                  make_part("glow", {"R", "G", "B"}, 0.5f)});
    workflow::ImageOptions options = make_options({}, {"glow"});
    options.depth = "uint16";
    EXPECT_THAT(convert("squared", options, "out.png").notes,
                ElementsAre(HasSubstr("only part 3 of 3 is written")));
    EXPECT_NEAR(read_image(folder.file("out.png")).get("R"), 0.25, 1.0 / 65535);
}

TEST_F(Layers, StayAsTheyAreInADataSpace) {
    NativeImage image = make_color({"R", "G", "B", "A"}, 0.3f);
    const float white[] = {0.3f, 0.3f};
    image.spec.attribute("adoptedNeutral", OIIO::TypeDesc(OIIO::TypeDesc::FLOAT, OIIO::TypeDesc::VEC2),
                         white);
    image.fill_bits("R", 5);
    write(image);
    workflow::ImageOptions options;
    options.data_space = "Raw";
    const workflow::ImageReport report = convert("squared", options);
    expect_kept(image, read(), {"R", "G", "B", "A"});
    EXPECT_NE(read().spec.find_attribute("adoptedNeutral"), nullptr) << "it describes the colors still";
    EXPECT_EQ(workflow::describe(report.layers), "left rgba (in the data space 'Raw')");
}

TEST_F(Layers, OfDataInPlainNumbersKeepTheirBits) {
    // Straight alpha, which OpenImageIO would divide by or multiply with on the way.
    Image image = make_image(2, 1, 4, OIIO::TypeUInt8, {0.5f, 0.25f, 1, 0.2f, 0.75f, 0.5f, 0.25f, 0});
    image.spec.attribute("oiio:UnassociatedAlpha", 1);
    write_image(folder.file("in.png"), image);
    workflow::ConversionRequest request;
    request.from = "lin";
    request.to = "squared";
    const workflow::Conversion conversion(session, request);
    workflow::ImageOptions options;
    options.data_space = "Raw";
    workflow::convert_image(conversion, folder.file("in.png"), folder.file("out.png"), options);
    EXPECT_EQ(read_image(folder.file("out.png")).values, read_image(folder.file("in.png")).values);
}

TEST_F(Layers, AreMixedOnlyByConversionsThatMixThem) {
    const auto mixes = [&](const std::string& destination) {
        workflow::ConversionRequest request;
        request.from = "lin";
        request.to = destination;
        return workflow::Conversion(session, request).mixes_channels();
    };
    EXPECT_FALSE(mixes("lin"));
    EXPECT_FALSE(mixes("squared"));
    EXPECT_FALSE(mixes("warm"));
    EXPECT_TRUE(mixes("swapped"));
}

} // namespace
