// The color layers of images are converted, data is kept bit for bit.

#include "tests/workflow/layer_fixture.h"

namespace {

using OIIO::TypeFloat;
using OIIO::TypeHalf;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
constexpr double TOLERANCE = 1e-6;

using Layers = LayerFileTest;

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
    EXPECT_EQ(
        workflow::describe(report.layers),
        "converted beauty, aovs:diffuse; left normals, crypto_object00, aovs:P (data by name); depth (data)");
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
    EXPECT_THAT(report.notes, ElementsAre(IsNote("image-adapted", "out.exr",
                                                 HasSubstr("all parts are written in scanlines"))));
    EXPECT_THAT(report.layers.converted, ElementsAre("part 1", "part 2"));
    for (int part : {0, 1})
        EXPECT_NEAR(read_image(folder.file("out.exr"), part).get("B", 39, 23), 0.25, TOLERANCE);
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

TEST_F(Layers, OfDataThatGetAnotherTypeAreNoted) {
    write(make_rich_image());
    EXPECT_THAT(convert("squared", {}, "out.tif").notes,
                testing::Contains(IsNote(
                    "image-adapted", "out.tif",
                    AllOf(HasSubstr("tiff has one pixel type for all channels"), HasSubstr("Z, id")))));
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
    EXPECT_THAT(report.notes, ElementsAre(IsNote("channels-dropped", "out.png",
                                                 HasSubstr("png does not support the channels R, G, B"))));
}

TEST_F(Layers, GiveAFormatOfOnePartTheFirstPartThatIsChosen) {
    write_native(folder.file("in.exr"),
                 {make_part("depth", {"Z"}, 1.0f), make_part("beauty", {"R", "G", "B"}, 0.25f),
                  make_part("glow", {"R", "G", "B"}, 0.5f)});
    workflow::ImageOptions options = make_options({}, {"glow"});
    options.depth = "uint16";
    EXPECT_THAT(convert("squared", options, "out.png").notes,
                ElementsAre(IsNote("channels-dropped", "out.png", HasSubstr("only part 3 of 3 is written"))));
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
