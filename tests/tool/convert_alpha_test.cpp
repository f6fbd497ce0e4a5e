#include "tests/colorio/color_formulas.h"
#include "tests/tool/images.h"
#include "tests/tool/tool_fixture.h"

namespace {

constexpr double TOLERANCE = 2e-5;

/// Converts one pixel of straight or associated color with alpha.
class ConvertAlpha : public ToolTest {
protected:
    static constexpr float RED = 0.25f;
    static constexpr float ALPHA = 0.5f;

    void write_pixel(const std::string& name, float red, float alpha, bool straight = false) {
        Image image = make_image(1, 1, 4, OIIO::TypeFloat, {red, red, red, alpha});
        if (straight)
            image.spec.attribute("oiio:UnassociatedAlpha", 1);
        write_image(path(name), image);
    }

    Image to_srgb(const std::string& input, const std::string& output, std::vector<std::string> more = {}) {
        more.insert(more.begin(), {"convert", path(input), path(output), "--from", "linear", "--to", "sRGB"});
        EXPECT_THAT(run(more), Succeeds());
        return read_image(path(output));
    }
};

TEST_F(ConvertAlpha, DividesWhereTheFileKeepsColorMultiplied) {
    write_pixel("in.exr", RED, ALPHA);
    const Image result = to_srgb("in.exr", "out.exr");
    EXPECT_NEAR(result.get("R"), formula::linear_to_srgb(RED / ALPHA) * ALPHA, TOLERANCE);
    EXPECT_EQ(result.get("A"), ALPHA);
}

TEST_F(ConvertAlpha, DoesNotDivideWhenTold) {
    write_pixel("in.exr", RED, ALPHA);
    const Image result = to_srgb("in.exr", "out.exr", {"--no-unpremult"});
    EXPECT_NEAR(result.get("R"), formula::linear_to_srgb(RED), TOLERANCE);
    EXPECT_EQ(result.get("A"), ALPHA);
}

TEST_F(ConvertAlpha, DoesNotDivideStraightColor) {
    write_pixel("in.tif", RED, ALPHA, true);
    const Image result = to_srgb("in.tif", "out.tif");
    EXPECT_NEAR(result.get("R"), formula::linear_to_srgb(RED), TOLERANCE);
    EXPECT_EQ(result.spec.get_int_attribute("oiio:UnassociatedAlpha"), 1);
}

TEST_F(ConvertAlpha, DividesStraightColorWhenTold) {
    write_pixel("in.tif", RED, ALPHA, true);
    const Image result = to_srgb("in.tif", "out.tif", {"--unpremult"});
    EXPECT_NEAR(result.get("R"), formula::linear_to_srgb(RED / ALPHA) * ALPHA, TOLERANCE);
}

TEST_F(ConvertAlpha, KeepsColorWhereAlphaIsZero) {
    write_pixel("in.exr", RED, 0.0f);
    const Image result = to_srgb("in.exr", "out.exr");
    EXPECT_NEAR(result.get("R"), formula::linear_to_srgb(RED), TOLERANCE);
    EXPECT_EQ(result.get("A"), 0.0f);
}

TEST_F(ConvertAlpha, BecomesStraightInAFormatThatKeepsItSo) {
    write_pixel("in.exr", RED, ALPHA);
    const Image result = to_srgb("in.exr", "out.png", {"-d", "uint16"});
    EXPECT_NEAR(result.get("R"), formula::linear_to_srgb(RED / ALPHA), 1.0 / 65535);
    EXPECT_NEAR(result.get("A"), ALPHA, 1.0 / 65535);
}

TEST_F(ConvertAlpha, BecomesAssociatedInAFormatThatKeepsItSo) {
    write_pixel("in.png", RED, ALPHA, true);
    const ToolRun result =
        run({"convert", path("in.png"), path("out.exr"), "--from", "sRGB", "--to", "linear", "-d", "float"});
    EXPECT_THAT(result, Succeeds());
    const Image written = read_image(path("in.png"));
    const Image converted = read_image(path("out.exr"));
    EXPECT_NEAR(converted.get("R"), formula::srgb_to_linear(written.get("R")) * written.get("A"), TOLERANCE);
}

TEST_F(ConvertAlpha, IsNeverAskedOfImagesWithoutIt) {
    write_image(path("in.exr"), make_image(1, 1, 3, OIIO::TypeFloat, {RED, RED, RED}));
    const Image result = to_srgb("in.exr", "out.exr", {"--unpremult"});
    EXPECT_NEAR(result.get("R"), formula::linear_to_srgb(RED), TOLERANCE);
    EXPECT_EQ(result.spec.nchannels, 3);
}

} // namespace
