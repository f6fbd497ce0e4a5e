#include <cmath>

#include "tests/colorio/color_formulas.h"
#include "tests/tool/configs.h"
#include "tests/tool/images.h"
#include "tests/tool/tool_fixture.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;

/// Between the entries of the 4101 entry tables the curves are straight lines.
constexpr double TABLE_TOLERANCE = 5e-6;

class ConvertColor : public ToolTest {
protected:
    /// A row of grays, as opaque red, green and blue.
    void write_grays(const std::string& name, OIIO::TypeDesc depth, const std::vector<float>& grays) {
        std::vector<float> values;
        for (const float gray : grays)
            values.insert(values.end(), {gray, gray, gray});
        write_image(path(name), make_image(static_cast<int>(grays.size()), 1, 3, depth, values));
    }

    /// Converts "in.exr" to "out.exr" and answers it.
    Image convert(std::vector<std::string> arguments, const std::string& input = "in.exr",
                  const std::string& output = "out.exr") {
        arguments.insert(arguments.begin(), {"convert", path(input), path(output)});
        const ToolRun result = run(arguments);
        EXPECT_THAT(result, Succeeds());
        return read_image(path(output));
    }
};

const std::vector<float> GRAYS = {0.0f, 0.001f, 0.01f, 0.04f, 0.05f, 0.18f, 0.5f, 0.73f, 1.0f};

TEST_F(ConvertColor, DecodesSrgbByItsFormula) {
    write_grays("in.exr", OIIO::TypeFloat, GRAYS);
    const Image result = convert({"--from", "sRGB", "--to", "linear"});
    for (size_t i = 0; i < GRAYS.size(); ++i)
        for (const char* channel : {"R", "G", "B"})
            EXPECT_NEAR(result.get(channel, static_cast<int>(i)), formula::srgb_to_linear(GRAYS[i]),
                        TABLE_TOLERANCE);
}

TEST_F(ConvertColor, EncodesThroughAViewByTheSrgbFormula) {
    write_grays("in.exr", OIIO::TypeFloat, GRAYS);
    const Image result = convert({"--from", "linear", "--view", "Tavelion.sRGB"});
    for (size_t i = 0; i < GRAYS.size(); ++i)
        EXPECT_NEAR(result.get("G", static_cast<int>(i)), formula::linear_to_srgb(GRAYS[i]), 2e-5);
}

TEST_F(ConvertColor, ConvertsBothWaysBetweenCineonAndLinear) {
    write_grays("in.exr", OIIO::TypeFloat, GRAYS);
    const Image linear = convert({"--from", "Tavelion|Cineon", "--to", "Tavelion|linear"});
    const Image cineon = convert({"--from", "Tavelion|linear", "--to", "Tavelion|Cineon"});
    for (size_t i = 0; i < GRAYS.size(); ++i) {
        const int x = static_cast<int>(i);
        EXPECT_NEAR(linear.get("R", x), formula::cineon_to_linear(GRAYS[i]), 1e-5);
        EXPECT_NEAR(cineon.get("B", x), formula::linear_to_cineon(GRAYS[i]), 2e-5);
    }
}

TEST_F(ConvertColor, MakesEightBitCodesAsADisplayWantsThem) {
    write_grays("in.exr", OIIO::TypeFloat, {-0.5f, 0.0f, 0.18f, 0.5f, 1.0f, 7.0f});
    const Image result = convert({"--from", "linear", "--view", "Tavelion.sRGB"}, "in.exr", "out.png");
    EXPECT_EQ(result.spec.format, OIIO::TypeUInt8);
    const double codes[] = {0, 0, 118, 188, 255, 255}; // IEC 61966-2-1, rounded
    for (int x = 0; x < 6; ++x)
        EXPECT_NEAR(result.get("G", x) * 255, codes[x], 1e-3) << x;
}

TEST_F(ConvertColor, ConvertsPixelsIndependentlyOfThreadsAndBands) {
    std::vector<float> values;
    for (int i = 0; i < 97 * 401 * 3; ++i)
        values.push_back(static_cast<float>(i % 1009) / 1008);
    write_image(path("in.exr"), make_image(97, 401, 3, OIIO::TypeFloat, values));
    const Image one = convert({"--from", "sRGB", "--to", "linear", "--threads", "1"});
    const Image many = convert({"--from", "sRGB", "--to", "linear", "--threads", "7"});
    EXPECT_EQ(one.values, many.values);
    for (size_t i = 0; i < values.size(); i += 97)
        EXPECT_NEAR(one.values[i], formula::srgb_to_linear(values[i]), TABLE_TOLERANCE);
}

TEST_F(ConvertColor, GivesTheSameWithoutTheVectorCode) {
    std::vector<float> grays;
    for (int i = 0; i < 9000; ++i)
        grays.push_back(static_cast<float>(i) / 8999);
    write_grays("in.exr", OIIO::TypeFloat, grays);
    const Image with = convert({"--from", "linear", "--to", "Cineon"});
    fast_path.set("0");
    const Image without = convert({"--from", "linear", "--to", "Cineon"});
    ASSERT_EQ(with.values.size(), without.values.size());
    for (size_t i = 0; i < with.values.size(); ++i)
        ASSERT_NEAR(with.values[i], without.values[i], 1e-6) << i;
}

TEST_F(ConvertColor, AcceptsRolesAsNames) {
    folder.write("show.ocio", SHOW_CONFIG);
    write_grays("in.exr", OIIO::TypeFloat, {0.8f});
    const Image result =
        convert({"--config", path("show.ocio"), "--from", "scene_linear", "--to", "texture_paint"});
    EXPECT_FLOAT_EQ(result.get("R"), 0.4f);
}

TEST_F(ConvertColor, TakesTheDisplayAndTheViewApartOrTogether) {
    folder.write("show.ocio", SHOW_CONFIG);
    write_grays("in.exr", OIIO::TypeFloat, {0.25f});
    const std::vector<std::vector<std::string>> ways = {{"--view", "Monitor.Warm"},
                                                        {"--display", "Monitor", "--view", "Warm"}};
    for (std::vector<std::string> arguments : ways) {
        arguments.insert(arguments.end(), {"--config", path("show.ocio"), "--from", "lin"});
        const Image result = convert(arguments);
        EXPECT_FLOAT_EQ(result.get("R"), 0.5f);
        EXPECT_FLOAT_EQ(result.get("G"), 0.25f);
    }
    const Image dotted =
        convert({"--config", path("show.ocio"), "--from", "lin", "--view", "Cinema.Film.v2"});
    EXPECT_FLOAT_EQ(dotted.get("G"), 0.125f);
}

TEST_F(ConvertColor, LeavesColorsBetweenASpaceAndItself) {
    write_grays("in.exr", OIIO::TypeFloat, {-1.0f, 0.3f, 9.0f});
    const ToolRun result =
        run({"convert", path("in.exr"), path("out.exr"), "--from", "sRGB", "--to", "Tavelion|sRGB"});
    EXPECT_THAT(result, Succeeds());
    EXPECT_THAT(result.err, HasSubstr("are unchanged"));
    EXPECT_EQ(read_image(path("out.exr")).values, read_image(path("in.exr")).values);
}

TEST_F(ConvertColor, TakesTheColorSpaceOfTheExtensionAndSaysSo) {
    write_grays("in.exr", OIIO::TypeFloat, {0.18f});
    const ToolRun result = run({"convert", path("in.exr"), path("out.exr"), "--to", "sRGB"});
    EXPECT_THAT(result, Succeeds());
    EXPECT_EQ(result.err, "in.exr: Tavelion|linear, from the built-in associations, category Open EXR\n");
    EXPECT_NEAR(read_image(path("out.exr")).get("R"), formula::linear_to_srgb(0.18f), 2e-5);
}

TEST_F(ConvertColor, AssumesAColorSpaceWhenThatOfTheExtensionDoesNotExist) {
    folder.write("show.ocio", SHOW_CONFIG);
    write_grays("in.exr", OIIO::TypeFloat, {0.18f});
    const ToolRun result = run(
        {"convert", path("in.exr"), path("out.exr"), "--to", "half_light", "--config", path("show.ocio")});
    EXPECT_THAT(result, Succeeds());
    EXPECT_THAT(result.err,
                AllOf(HasSubstr("in.exr: lin, assumed: the role scene_linear"), HasSubstr("--from")));
    EXPECT_FLOAT_EQ(read_image(path("out.exr")).get("R"), 0.09f);
}

TEST_F(ConvertColor, AnswersUnknownNamesWithTheNearestOnes) {
    folder.write("show.ocio", SHOW_CONFIG);
    write_grays("in.exr", OIIO::TypeFloat, {0.18f});
    const auto convert_with = [&](const std::string& from, const std::string& option, const std::string& to) {
        return run({"convert", path("in.exr"), path("out.exr"), "--config", path("show.ocio"), "--from", from,
                    option, to});
    };
    EXPECT_THAT(
        convert_with("lin", "--to", "half_ligth"),
        FailsWith(
            1,
            "colorio: error: no color space 'half_ligth' in show.ocio\nhint: did you mean 'half_light'?\n"));
    EXPECT_THAT(
        convert_with("ops|warn", "--to", "lin"),
        FailsWith(
            1, "colorio: error: no color space 'ops|warn' in show.ocio\nhint: did you mean 'ops|warm'?\n"));
    EXPECT_THAT(
        convert_with("lin", "--view", "Monitor.Flim"),
        FailsWith(
            1, "colorio: error: no view 'Monitor.Flim' in show.ocio\nhint: did you mean 'Monitor.Film'?\n"));
    EXPECT_THAT(convert_with("lin", "--to", "zebra"),
                FailsWith(1, "colorio: error: no color space 'zebra' in show.ocio\n"));
    EXPECT_EQ(count_files(), 2u) << "the configuration and the input";
}

TEST_F(ConvertColor, FailsOnAConversionThatTheConfigurationCannotMake) {
    folder.write("show.ocio", std::string(SHOW_CONFIG) +
                                  "  - !<ColorSpace>\n    name: broken\n"
                                  "    from_reference: !<FileTransform> {src: gone.spi1d}\n");
    write_grays("in.exr", OIIO::TypeFloat, {0.18f});
    EXPECT_THAT(run({"convert", path("in.exr"), path("out.exr"), "--config", path("show.ocio"), "--from",
                     "lin", "--to", "broken"}),
                FailsWith(1, AllOf(HasSubstr("'lin' to 'broken'"), HasSubstr("'gone.spi1d' is missing"),
                                   HasSubstr(path("luts/gone.spi1d")))));
}

TEST_F(ConvertColor, TellsWhatItDid) {
    write_grays("in.exr", OIIO::TypeFloat, {0.18f, 0.5f});
    const ToolRun result =
        run({"convert", path("in.exr"), path("out.exr"), "--from", "linear", "--to", "sRGB", "-d", "half"});
    EXPECT_THAT(result.out, AllOf(HasSubstr(path("out.exr")), HasSubstr("Tavelion|linear to Tavelion|sRGB"),
                                  HasSubstr("2 x 1 half"), HasSubstr("Mpixel/s")));
}

TEST_F(ConvertColor, IsTwoWaysOfSayingOneDestination) {
    const auto usage = [&](std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), {"convert", path("in.exr"), path("out.exr"), "--from", "linear"});
        return run(arguments);
    };
    EXPECT_THAT(usage({}), FailsWith(2, HasSubstr("--to or --view")));
    EXPECT_THAT(usage({"--display", "Tavelion"}), FailsWith(2, HasSubstr("--display needs --view")));
    EXPECT_THAT(usage({"--to", "sRGB", "--view", "Tavelion.sRGB"}),
                FailsWith(2, HasSubstr("cannot be combined")));
    EXPECT_THAT(usage({"--to", "sRGB", "-d", "int32"}), FailsWith(2, HasSubstr("int32")));
    EXPECT_THAT(usage({"--to", "sRGB", "--threads", "0"}), FailsWith(2, HasSubstr("threads")));
    EXPECT_THAT(usage({"--to", "sRGB", "--unpremult", "--no-unpremult"}),
                FailsWith(2, HasSubstr("unpremult")));
}

} // namespace
