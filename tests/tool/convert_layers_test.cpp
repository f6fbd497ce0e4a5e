// The choice of layers and parts on the command line, and what the result line says of them.

#include "tests/colorio/color_formulas.h"
#include "tests/tool/images.h"
#include "tests/tool/native_image.h"
#include "tests/tool/tool_fixture.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

constexpr double TOLERANCE = 2e-5; // of the built-in table

class ConvertLayers : public ToolTest {
protected:
    ToolRun convert(std::vector<std::string> more = {}, const std::string& input = "in.exr") {
        more.insert(more.begin(),
                    {"convert", path(input), path("out.exr"), "--from", "sRGB", "--to", "linear"});
        return run(more);
    }

    void write_layers() const {
        Image image = make_image(1, 1, 10, OIIO::TypeFloat, std::vector<float>(10, 0.5f));
        image.spec.channelnames = {"R",         "G",        "B",        "diffuse.R", "diffuse.G",
                                   "diffuse.B", "normal.R", "normal.G", "normal.B",  "Z"};
        write_image(path("in.exr"), image);
    }

    void write_parts() const {
        std::vector<Image> parts;
        for (const char* name : {"beauty", "glow", "normals"}) {
            parts.push_back(make_image(1, 1, 3, OIIO::TypeFloat, {0.5f, 0.5f, 0.5f}));
            parts.back().spec.attribute("oiio:subimagename", name);
        }
        write_image(path("in.exr"), parts);
    }

    void expect_converted(const std::string& channel, int part = 0) const {
        EXPECT_NEAR(read_image(path("out.exr"), part).get(channel), formula::srgb_to_linear(0.5), TOLERANCE);
    }
    void expect_left(const std::string& channel, int part = 0) const {
        EXPECT_EQ(read_image(path("out.exr"), part).get(channel), 0.5f);
    }
};

TEST_F(ConvertLayers, OfColorAreConvertedAndTheResultLineSaysWhich) {
    write_layers();
    const ToolRun result = convert();
    ASSERT_THAT(result, Succeeds());
    EXPECT_THAT(result.out, HasSubstr("; converted rgba, diffuse; left Z (data); normal (data by name)\n"));
    expect_converted("G");
    expect_converted("diffuse.G");
    expect_left("normal.G");
}

TEST_F(ConvertLayers, AreNotMentionedWhereThereIsButOne) {
    write_image(path("in.exr"), make_image(1, 1, 4, OIIO::TypeFloat, {0.5f, 0.5f, 0.5f, 1.0f}));
    const ToolRun result = convert();
    ASSERT_THAT(result, Succeeds());
    EXPECT_THAT(result.out, AllOf(HasSubstr("Mpixel/s\n"), Not(HasSubstr("converted"))));
}

TEST_F(ConvertLayers, AreMentionedWhereTheFormatDropsTheOthers) {
    write_layers();
    const auto to_png = [&](const std::vector<std::string>& more) {
        std::vector<std::string> line = {"convert", path("in.exr"), path("out.png"), "--from",
                                         "sRGB",    "--to",         "linear"};
        line.insert(line.end(), more.begin(), more.end());
        return run(line);
    };
    EXPECT_THAT(to_png({}).out, HasSubstr("Mpixel/s; converted rgba\n"));
    EXPECT_THAT(to_png({"--skip", "rgba"}).out, HasSubstr("Mpixel/s; converted diffuse\n"));
    write_parts();
    EXPECT_THAT(to_png({}).out, HasSubstr("Mpixel/s; converted beauty\n"));
    EXPECT_THAT(to_png({"--parts", "glow"}).out, HasSubstr("Mpixel/s; converted glow\n"));
}

TEST_F(ConvertLayers, AreTakenFromLists) {
    write_layers();
    ASSERT_THAT(convert({"--layers", "diffuse,normal"}), Succeeds());
    expect_left("G");
    expect_converted("diffuse.G");
    expect_converted("normal.G");
    ASSERT_THAT(convert({"--layers", "diffuse", "--layers", "rgba"}), Succeeds());
    expect_converted("G");
    expect_left("normal.G");
    ASSERT_THAT(convert({"--layers", "all", "--skip", "diffuse"}), Succeeds());
    expect_converted("G");
    expect_left("diffuse.G");
}

TEST_F(ConvertLayers, OfPartsAreTakenFromLists) {
    write_parts();
    const ToolRun result = convert();
    ASSERT_THAT(result, Succeeds());
    EXPECT_THAT(result.out, HasSubstr("; converted beauty, glow; left normals (data by name)\n"));
    expect_left("R", 2);
    ASSERT_THAT(convert({"--parts", "glow"}), Succeeds());
    expect_left("R", 0);
    expect_converted("R", 1);
    ASSERT_THAT(convert({"--parts", "1,2", "--skip", "glow"}), Succeeds());
    expect_converted("R", 0);
    expect_left("R", 1);
    ASSERT_THAT(convert({"--layers", "normals"}), Succeeds());
    expect_left("R", 0);
    expect_converted("R", 2);
}

TEST_F(ConvertLayers, WithWrongNamesAreOneErrorEach) {
    write_layers();
    folder.write("out.exr", "what was there");
    for (const char* option : {"--layers", "--skip"})
        EXPECT_THAT(convert({option, "difuse"}),
                    FailsWith(1, AllOf(HasSubstr("in.exr"), HasSubstr("'difuse'"),
                                       HasSubstr("did you mean 'diffuse'?"),
                                       HasSubstr("it has rgba, Z, diffuse, normal"))));
    EXPECT_THAT(convert({"--parts", "2"}), FailsWith(1, HasSubstr("it has no part '2'")));
    EXPECT_THAT(convert({"--layers", "Z"}), FailsWith(1, HasSubstr("it has no color channels")));
    EXPECT_THAT(convert({"--skip", "rgba,diffuse"}),
                FailsWith(1, HasSubstr("no color channels to convert: rgba, diffuse (skipped)")));
    EXPECT_THAT(convert({"--layers"}), FailsWith(2, HasSubstr("--layers")));
    EXPECT_EQ(folder.read("out.exr"), "what was there");
}

TEST_F(ConvertLayers, WithTransparentColorAreNoted) {
    write_image(path("in.exr"), make_image(1, 1, 4, OIIO::TypeFloat, {0.5f, 0.5f, 0.5f, 0.0f}));
    const ToolRun result = convert();
    ASSERT_THAT(result, Succeeds());
    EXPECT_THAT(result.err, HasSubstr("the alpha of rgba is 0 everywhere"));
    expect_converted("R");
}

TEST_F(ConvertLayers, OfDeepImagesAreConverted) {
    DeepImage deep = make_deep_image(2, 1,
                                     {{"R", OIIO::TypeFloat},
                                      {"G", OIIO::TypeFloat},
                                      {"B", OIIO::TypeFloat},
                                      {"A", OIIO::TypeFloat},
                                      {"Z", OIIO::TypeFloat}},
                                     {2, 1});
    for (int channel = 0; channel < 5; ++channel)
        deep.pixels.set_deep_value(0, channel, 1, 0.5f);
    write_deep(path("deep.exr"), {deep});
    const ToolRun result = convert({}, "deep.exr");
    ASSERT_THAT(result, Succeeds());
    EXPECT_THAT(result.out, HasSubstr("converted rgba; left Z (data)"));
    const DeepImage after = read_deep(path("out.exr"));
    EXPECT_NEAR(after.pixels.deep_value(0, 1, 1), formula::srgb_to_linear(0.5 / 0.5) * 0.5, TOLERANCE);
    EXPECT_EQ(after.pixels.deep_value(0, 4, 1), 0.5f);
}

TEST_F(ConvertLayers, OfASequenceAreThoseOfItsFirstImage) {
    write_layers();
    for (const char* name : {"shot.1.exr", "shot.2.exr"})
        folder.write(name, folder.read("in.exr"));
    const ToolRun result = run({"convert", path("shot.#.exr"), path("graded.#.exr"), "--frames", "1-2",
                                "--from", "sRGB", "--to", "linear", "--skip", "diffuse"});
    ASSERT_THAT(result, Succeeds());
    EXPECT_THAT(result.out,
                HasSubstr("converted rgba; left Z (data); diffuse (skipped); normal (data by name)"));
    EXPECT_EQ(read_image(path("graded.2.exr")).get("diffuse.G"), 0.5f);
}

/// An OpenEXR file of 2 x 2 halfs in Y, and RY and BY for each four of them.
std::string make_subsampled_file() {
    std::string file;
    const auto add = [&](std::uint64_t value, int bytes) {
        for (int i = 0; i < bytes; ++i)
            file += static_cast<char>(value >> (8 * i));
    };
    const auto add_attribute = [&](const std::string& name, const std::string& type, std::uint64_t size) {
        file += name + '\0' + type + '\0';
        add(size, 4);
    };
    constexpr std::uint64_t HALF = 1, ONE = 0x3f800000, LAST = 1;
    add(20000630, 4);
    add(2, 4);
    add_attribute("channels", "chlist", 3 + 3 + 2 + 3 * 16 + 1);
    for (const char* channel : {"BY", "RY", "Y"}) {
        file += std::string(channel) + '\0';
        add(HALF, 4);
        add(0, 4);
        add(channel[1] == 'Y' ? 2 : 1, 4);
        add(channel[1] == 'Y' ? 2 : 1, 4);
    }
    add(0, 1);
    add_attribute("compression", "compression", 1);
    add(0, 1);
    for (const char* window : {"dataWindow", "displayWindow"}) {
        add_attribute(window, "box2i", 16);
        add(0, 8);
        add(LAST, 4);
        add(LAST, 4);
    }
    add_attribute("lineOrder", "lineOrder", 1);
    add(0, 1);
    add_attribute("pixelAspectRatio", "float", 4);
    add(ONE, 4);
    add_attribute("screenWindowCenter", "v2f", 8);
    add(0, 8);
    add_attribute("screenWindowWidth", "float", 4);
    add(ONE, 4);
    add(0, 1);
    const std::uint64_t first = file.size() + 16;
    add(first, 8);
    add(first + 8 + 8, 8);
    for (const std::uint64_t size : {8, 4}) { // the first row has BY and RY, too
        add(size == 8 ? 0 : 1, 4);
        add(size, 4);
        add(0, static_cast<int>(size));
    }
    return file;
}

TEST_F(ConvertLayers, OfSubsampledChannelsAreRefused) {
    folder.write("in.exr", make_subsampled_file());
    folder.write("out.exr", "what was there");
    EXPECT_THAT(convert(), FailsWith(1, AllOf(HasSubstr("in.exr"), HasSubstr("Subsampled channels"))));
    EXPECT_EQ(folder.read("out.exr"), "what was there");
}

} // namespace
