// Layers of one color, and the alpha of layers.

#include "tests/workflow/layer_fixture.h"

namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
constexpr double TOLERANCE = 1e-6;

using LayerAlpha = LayerFileTest;

TEST_F(LayerAlpha, OfOneColorAreConvertedWhereTheOthersDoNotMatter) {
    for (const char* channel : {"R", "G", "B"}) {
        write(make_color({channel}, 0.5f));
        const workflow::ImageReport report = convert();
        EXPECT_THAT(read().spec.channelnames, ElementsAre(channel));
        EXPECT_NEAR(read().get(channel, 5), 0.25, TOLERANCE);
        EXPECT_EQ(workflow::describe(report.layers), "");
    }
}

TEST_F(LayerAlpha, OfOneColorGetTheConversionOfTheirChannel) {
    write(make_color({"R"}, 0.5f));
    convert("warm");
    EXPECT_EQ(read().get("R"), 1.0f);
    write(make_color({"G"}, 0.5f));
    convert("warm");
    EXPECT_EQ(read().get("G"), 0.5f);
}

TEST_F(LayerAlpha, OfOneColorAreRefusedWhereTheOthersMatter) {
    write(make_color({"R"}, 0.5f));
    EXPECT_THAT(failure_of([&] { convert("swapped"); }).message,
                AllOf(HasSubstr("no color channels to convert"),
                      HasSubstr("R (the conversion mixes it with missing channels)")));
    write(make_color({"mask.R"}, 0.5f));
    EXPECT_THAT(failure_of([&] { convert("swapped", make_options({"mask"})); }).message,
                HasSubstr("it lacks some of red, green and blue"));
    convert("squared", make_options({"mask"}));
    EXPECT_EQ(read().get("mask.R"), 0.25f);
}

TEST_F(LayerAlpha, OfGrayBecomeRedGreenAndBlueWhereTheConversionTints) {
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

TEST_F(LayerAlpha, AreDividedByTheirAlphaOrThatAroundThem) {
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

TEST_F(LayerAlpha, OfAnotherViewAreNotDividedByTheAlphaOfTheFirst) {
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

TEST_F(LayerAlpha, OfPartsWithoutAlphaAreDividedByThatOfAPartLikeThem) {
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

TEST_F(LayerAlpha, WithAlphaOfZeroEverywhereAreNoted) {
    NativeImage image = make_color({"R", "G", "B", "A", "own.R", "own.G", "own.B", "own.A"}, 0.5f);
    image.fill("own.A", 0.0f);
    write(image);
    EXPECT_THAT(convert().notes,
                ElementsAre(IsNote(
                    "image-adapted", "in.exr",
                    testing::StrEq("the alpha of own is 0 everywhere: its color is not divided by alpha"))));
    EXPECT_EQ(read().get("own.R"), 0.25f);
    image.set("own.A", 5, 0.001f);
    write(image);
    EXPECT_THAT(convert().notes, IsEmpty());
}

} // namespace
