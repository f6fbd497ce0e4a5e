#include "tests/colorio/color_formulas.h"
#include "tests/tool/images.h"
#include "tests/tool/tool_fixture.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;

constexpr double HALF_OF_ONE = 1.0 / 2048;

class ConvertParts : public ToolTest {
protected:
    ToolRun convert(const std::string& input, const std::string& output) {
        return run({"convert", path(input), path(output), "--from", "sRGB", "--to", "linear"});
    }

    static Image make_part(const std::string& name, const std::vector<std::string>& channels, float value,
                           int width = 4) {
        const int count = static_cast<int>(channels.size());
        Image part = make_image(width, 2, count, OIIO::TypeHalf,
                                std::vector<float>(static_cast<size_t>(width * 2 * count), value));
        part.spec.channelnames = channels;
        part.spec.full_width = 8; // parts of a file have one display window
        part.spec.attribute("oiio:subimagename", name);
        return part;
    }

    void write_three_parts() {
        write_image(path("in.exr"),
                    {make_part("beauty", {"R", "G", "B"}, 0.5f), make_part("depth", {"Z"}, 77.0f, 8),
                     make_part("specular", {"R", "G", "B"}, 0.25f)});
    }
};

/// 8 x 8 pixels and the smaller levels down to one pixel, each of one value: 0.5, 0.25, 0.1667 and so on.
void write_levels(const std::string& file) {
    OIIO::ImageSpec spec(8, 8, 3, OIIO::TypeHalf);
    spec.tile_width = spec.tile_height = 4;
    spec.attribute("textureformat", "Plain Texture");
    const auto output = OIIO::ImageOutput::create(file);
    for (int level = 0, side = 8; side >= 1; ++level, side /= 2) {
        spec.width = spec.height = spec.full_width = spec.full_height = side;
        const auto mode = level == 0 ? OIIO::ImageOutput::Create : OIIO::ImageOutput::AppendMIPLevel;
        ASSERT_TRUE(output->open(file, spec, mode)) << output->geterror();
        const std::vector<float> values(static_cast<size_t>(side * side * 3),
                                        0.5f / static_cast<float>(level + 1));
        ASSERT_TRUE(output->write_image(OIIO::TypeFloat, values.data())) << output->geterror();
    }
    ASSERT_TRUE(output->close());
}

TEST_F(ConvertParts, ConvertsTheColorsOfEachAndKeepsTheRest) {
    write_three_parts();
    EXPECT_THAT(convert("in.exr", "out.exr"), Succeeds());
    ASSERT_EQ(count_subimages(path("out.exr")), 3);
    const Image beauty = read_image(path("out.exr"), 0);
    const Image depth = read_image(path("out.exr"), 1);
    const Image specular = read_image(path("out.exr"), 2);
    EXPECT_EQ(beauty.spec.get_string_attribute("oiio:subimagename"), "beauty");
    EXPECT_NEAR(beauty.get("G", 3, 1), formula::srgb_to_linear(0.5), HALF_OF_ONE);
    EXPECT_EQ(depth.spec.width, 8);
    EXPECT_EQ(depth.get("Z", 7, 1), 77.0f);
    EXPECT_EQ(specular.spec.get_string_attribute("oiio:subimagename"), "specular");
    EXPECT_NEAR(specular.get("R"), formula::srgb_to_linear(0.25), HALF_OF_ONE);
}

TEST_F(ConvertParts, WritesTheFirstWhereTheFormatHoldsOneAndSaysSo) {
    write_three_parts();
    const ToolRun result = convert("in.exr", "out.png");
    EXPECT_THAT(result, Succeeds());
    EXPECT_THAT(result.err, HasSubstr("png does not support several parts: only part 1 of 3 is written"));
    EXPECT_NEAR(read_image(path("out.png")).get("R"), formula::srgb_to_linear(0.5), 1.0 / 255);
}

TEST_F(ConvertParts, ConvertsTheColorsOfTheFirstLayerWhereThereIsNoPlainOne) {
    write_image(path("in.exr"), make_part("", {"diffuse.R", "diffuse.G", "diffuse.B", "normal.X"}, 0.5f));
    EXPECT_THAT(convert("in.exr", "out.exr"), Succeeds());
    const Image after = read_image(path("out.exr"));
    EXPECT_NEAR(after.get("diffuse.G"), formula::srgb_to_linear(0.5), HALF_OF_ONE);
    EXPECT_EQ(after.get("normal.X"), 0.5f);
}

TEST_F(ConvertParts, LeavesLayersBesideThePlainColor) {
    write_image(path("in.exr"), make_part("", {"R", "G", "B", "normal.R", "normal.G", "normal.B"}, 0.5f));
    EXPECT_THAT(convert("in.exr", "out.exr"), Succeeds());
    const Image after = read_image(path("out.exr"));
    EXPECT_NEAR(after.get("R"), formula::srgb_to_linear(0.5), HALF_OF_ONE);
    EXPECT_EQ(after.get("normal.R"), 0.5f);
}

TEST_F(ConvertParts, RefusesImagesWithoutColor) {
    write_image(path("in.exr"), make_part("", {"Z", "id"}, 1.0f));
    EXPECT_THAT(convert("in.exr", "out.exr"),
                FailsWith(1, AllOf(HasSubstr("in.exr"), HasSubstr("no color channels"))));
    EXPECT_FALSE(folder.exists("out.exr"));
}

/// Two parts in tiles that stand over the right and the lower edge.
void write_tiled_parts(const std::string& file) {
    Image part = make_image(40, 24, 3, OIIO::TypeHalf, std::vector<float>(40 * 24 * 3, 0.5f));
    part.spec.tile_width = part.spec.tile_height = 16;
    write_image(file, std::vector<Image>{part, part});
}

TEST_F(ConvertParts, KeepsTheTilesOfEach) {
    for (const char* name : {"tiled.exr", "tiled.tif"}) {
        write_tiled_parts(path(name));
        EXPECT_THAT(convert(name, "out.tif"), Succeeds());
        for (int i = 0; i < 2; ++i) {
            const Image part = read_image(path("out.tif"), i);
            EXPECT_EQ(part.spec.tile_width, 16) << name;
            EXPECT_NEAR(part.get("G", 39, 23), formula::srgb_to_linear(0.5), HALF_OF_ONE) << name;
        }
    }
}

TEST_F(ConvertParts, ConvertsEveryLevelOfResolution) {
    write_levels(path("in.exr"));
    EXPECT_THAT(convert("in.exr", "out.exr"), Succeeds());
    for (int level = 0, side = 8; side >= 1; ++level, side /= 2) {
        const Image part = read_image(path("out.exr"), 0, level);
        EXPECT_EQ(part.spec.width, side);
        EXPECT_EQ(part.spec.tile_width, 4);
        EXPECT_NEAR(part.get("B"), formula::srgb_to_linear(0.5 / (level + 1)), HALF_OF_ONE) << level;
    }
    EXPECT_THAT(convert("in.exr", "out.png").err, HasSubstr("only the full resolution is written"));
}

} // namespace
