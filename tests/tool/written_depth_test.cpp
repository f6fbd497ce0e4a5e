// How many bits the written colors have, and which codes.

#include <array>
#include <cmath>

#include "tests/tool/images.h"
#include "tests/tool/tool_fixture.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class WrittenDepth : public ToolTest {
protected:
    /// Leaves the colors as they are.
    ToolRun copy(const std::string& input, const std::string& output, std::vector<std::string> more = {}) {
        more.insert(more.begin(),
                    {"convert", path(input), path(output), "--from", "linear", "--to", "linear"});
        return run(more);
    }

    void write_flat(const std::string& name, OIIO::TypeDesc depth, float gray, int side = 1) {
        write_image(path(name),
                    make_image(side, side, 3, depth,
                               std::vector<float>(static_cast<std::size_t>(side * side * 3), gray)));
    }

    /// One pixel for each of `count` values from 0 to 1.
    void write_ramp(const std::string& name, OIIO::TypeDesc depth, int count) {
        Image image = make_image(count, 1, 3, depth, {});
        for (std::size_t i = 0; i < image.values.size(); ++i)
            image.values[i] = static_cast<float>(i / 3) / static_cast<float>(count - 1);
        write_image(path(name), image);
    }

    unsigned int get_byte(const std::string& name, std::size_t offset) const {
        return static_cast<unsigned char>(folder.read(name).at(offset));
    }

    /// A number of the DPX file, which begins with "SDPX" if it is big-endian.
    unsigned int get_dpx_number(const std::string& name, std::size_t offset, std::size_t bytes) const {
        const bool is_big = folder.read(name).substr(0, 4) == "SDPX";
        unsigned int number = 0;
        for (std::size_t i = 0; i < bytes; ++i)
            number = number << 8 | get_byte(name, offset + (is_big ? i : bytes - 1 - i));
        return number;
    }
};

// SMPTE ST 268: offsets of the first image element.
constexpr std::size_t DPX_IMAGE_DATA = 4;
constexpr std::size_t DPX_BIT_SIZE = 803;
constexpr std::size_t DPX_PACKING = 804;

struct Written {
    const char* extension;
    const char* depth;
    OIIO::TypeDesc type;
    int bits; ///< "oiio:BitsPerSample" of the file; 0 when it has none.
};

class WrittenDepths : public WrittenDepth, public testing::WithParamInterface<Written> {};

TEST_P(WrittenDepths, AreThoseThatAreAskedForAndReported) {
    const Written& asked = GetParam();
    const std::string output = std::string("out.") + asked.extension;
    for (const OIIO::TypeDesc& input : {OIIO::TypeHalf, OIIO::TypeFloat}) {
        write_flat("in.exr", input, 0.25f, 8);
        const ToolRun result = copy("in.exr", output, {"-d", asked.depth});
        ASSERT_THAT(result, Succeeds());
        EXPECT_THAT(result.out, HasSubstr(std::string(", 8 x 8 ") + asked.depth + ","));
        const Image written = read_image(path(output));
        EXPECT_EQ(written.spec.format, asked.type);
        EXPECT_EQ(written.spec.get_int_attribute("oiio:BitsPerSample"), asked.bits);
        const double step = asked.type == OIIO::TypeHalf || asked.type == OIIO::TypeFloat ? 1e-6
                            : asked.bits > 0 ? 1.0 / ((1 << asked.bits) - 1)
                                             : 1.0 / (asked.type == OIIO::TypeUInt8 ? 255 : 65535);
        EXPECT_NEAR(written.get("G", 3, 5), 0.25, step / 2);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Formats, WrittenDepths,
    testing::Values(
        Written{"dpx", "uint8", OIIO::TypeUInt8, 8}, Written{"dpx", "uint10", OIIO::TypeUInt16, 10},
        Written{"dpx", "uint12", OIIO::TypeUInt16, 12}, Written{"dpx", "uint16", OIIO::TypeUInt16, 16},
        Written{"dpx", "float", OIIO::TypeFloat, 32}, Written{"tif", "uint8", OIIO::TypeUInt8, 8},
        Written{"tif", "uint10", OIIO::TypeUInt16, 10}, Written{"tif", "uint12", OIIO::TypeUInt16, 12},
        Written{"tif", "uint16", OIIO::TypeUInt16, 16}, Written{"tif", "float", OIIO::TypeFloat, 32},
        Written{"exr", "half", OIIO::TypeHalf, 0}, Written{"exr", "float", OIIO::TypeFloat, 0},
        Written{"png", "uint8", OIIO::TypeUInt8, 0}, Written{"png", "uint16", OIIO::TypeUInt16, 0},
        Written{"sgi", "uint8", OIIO::TypeUInt8, 0}, Written{"sgi", "uint16", OIIO::TypeUInt16, 0},
        Written{"tga", "uint8", OIIO::TypeUInt8, 8}, Written{"bmp", "uint8", OIIO::TypeUInt8, 0}),
    [](const auto& written) { return std::string(written.param.extension) + "_" + written.param.depth; });

TEST_F(WrittenDepth, ThatTheFormatDoesNotSupportIsRefusedWithThoseThatItDoes) {
    write_flat("in.exr", OIIO::TypeHalf, 0.5f);
    const std::vector<std::array<const char*, 3>> cases = {
        {"out.dpx", "half", "dpx does not support half, only uint8, uint10, uint12, uint16, float"},
        {"out.tif", "half", "tiff does not support half, only uint8, uint10, uint12, uint16, float"},
        {"out.png", "uint10", "png does not support uint10, only uint8, uint16"},
        {"out.exr", "uint16", "openexr does not support uint16, only half, float"},
        {"out.jpg", "uint16", "jpeg does not support uint16, only uint8"},
        {"out.hdr", "half", "hdr does not support half, only float"},
        {"out.rla", "half", "rla does not support half, only uint8, uint16, float"},
    };
    for (const auto& [output, depth, reason] : cases)
        EXPECT_THAT(
            run({"convert", path("in.exr"), path(output), "--from", "linear", "--to", "sRGB", "-d", depth}),
            FailsWith(1, "colorio: error: cannot write '" + path(output) + "': " + reason + "\n"));
    EXPECT_EQ(count_files(), 1u);
}

TEST_F(WrittenDepth, OfJpeg2000IsReportedAsItIsWritten) {
    write_flat("in.exr", OIIO::TypeHalf, 0.25f, 8);
    for (const char* depth : {"uint10", "uint12", "uint16"})
        EXPECT_THAT(copy("in.exr", "out.jp2", {"-d", depth}).out,
                    HasSubstr(std::string(", 8 x 8 ") + depth + ","));
}

TEST_F(WrittenDepth, OfASequenceIsRefusedOnce) {
    write_flat("in.1.exr", OIIO::TypeHalf, 0.5f);
    write_flat("in.2.exr", OIIO::TypeHalf, 0.5f);
    EXPECT_THAT(run({"convert", path("in.#.exr"), path("out.#.png"), "--frames", "1-2", "--from", "linear",
                     "--to", "sRGB", "-d", "half"}),
                FailsWith(1, "colorio: error: cannot write '" + path("out.#.png") +
                                 "': png does not support half, only uint8, uint16\n"));
}

TEST_F(WrittenDepth, ThatIsUnknownIsRefusedWithThoseThatAreValid) {
    write_flat("in.exr", OIIO::TypeHalf, 0.5f);
    EXPECT_THAT(copy("in.exr", "out.exr", {"-d", "uint9"}),
                FailsWith(2, AllOf(HasSubstr("uint9"), HasSubstr("uint10"), HasSubstr("uint12"))));
}

TEST_F(WrittenDepth, OfDpxIsInItsHeaderAndItsWords) {
    Image image = make_image(1, 1, 3, OIIO::TypeFloat, {100.0f / 1023, 200.4f / 1023, 1022.6f / 1023});
    write_image(path("in.exr"), image);
    ASSERT_THAT(copy("in.exr", "out.dpx", {"-d", "uint10"}), Succeeds());
    EXPECT_EQ(get_byte("out.dpx", DPX_BIT_SIZE), 10u);
    EXPECT_EQ(get_dpx_number("out.dpx", DPX_PACKING, 2), 1u) << "filled to 32-bit words, method A";
    const std::size_t pixels = get_dpx_number("out.dpx", DPX_IMAGE_DATA, 4);
    EXPECT_EQ(get_dpx_number("out.dpx", pixels, 4), 100u << 22 | 200u << 12 | 1023u << 2)
        << "rounded to the nearest code";

    ASSERT_THAT(copy("in.exr", "out.dpx", {"-d", "uint12"}), Succeeds());
    EXPECT_EQ(get_byte("out.dpx", DPX_BIT_SIZE), 12u);
}

TEST_F(WrittenDepth, OfFewBitsKeepsEveryCode) {
    for (const auto& [depth, count] : {std::pair("uint10", 1024), {"uint12", 4096}})
        for (const char* output : {"out.dpx", "out.tif"}) {
            write_ramp("in.tif", OIIO::TypeUInt16, count);
            ASSERT_THAT(copy("in.tif", output, {"-d", depth}), Succeeds());
            const Image written = read_image(path(output));
            for (int x = 0; x < count; ++x)
                ASSERT_EQ(std::lround(written.get("B", x) * static_cast<float>(count - 1)), x) << output;
        }
}

TEST_F(WrittenDepth, OfFloatsIsTenBitsInDpxIfNoneIsAskedFor) {
    for (const OIIO::TypeDesc& depth : {OIIO::TypeHalf, OIIO::TypeFloat}) {
        write_flat("in.exr", depth, 0.5f);
        const ToolRun result = copy("in.exr", "out.dpx");
        EXPECT_THAT(result.out, HasSubstr(" uint10,"));
        EXPECT_EQ(get_byte("out.dpx", DPX_BIT_SIZE), 10u);
    }
}

TEST_F(WrittenDepth, OfDpxIsKeptInDpxIfNoneIsAskedFor) {
    write_ramp("in.tif", OIIO::TypeUInt16, 1024);
    ASSERT_THAT(copy("in.tif", "first.dpx", {"-d", "uint10"}), Succeeds());
    const ToolRun result = copy("first.dpx", "second.dpx");
    EXPECT_THAT(result.out, HasSubstr(" uint10,"));
    EXPECT_EQ(get_byte("second.dpx", DPX_BIT_SIZE), 10u);
    EXPECT_EQ(read_image(path("first.dpx")).values, read_image(path("second.dpx")).values);
}

TEST_F(WrittenDepth, ReplacesThatOfTheInputWithItsPackingAndCodes) {
    Image image = make_image(2, 1, 3, OIIO::TypeUInt16, std::vector<float>(6, 0.5f));
    image.spec.attribute("oiio:BitsPerSample", 10);
    image.spec.attribute("dpx:Packing", "Filled, method B");
    image.spec.attribute("dpx:LowData", 95);
    image.spec.attribute("dpx:HighData", 685);
    write_image(path("in.dpx"), image);
    ASSERT_EQ(read_image(path("in.dpx")).spec.get_int_attribute("dpx:HighData"), 685);
    const ToolRun result = copy("in.dpx", "out.dpx", {"-d", "uint16"});
    EXPECT_THAT(result.out, HasSubstr(" uint16,"));
    EXPECT_EQ(get_byte("out.dpx", DPX_BIT_SIZE), 16u);
    const OIIO::ImageSpec spec = read_image(path("out.dpx")).spec;
    EXPECT_EQ(spec.get_int_attribute("dpx:HighData", -1), -1);
    EXPECT_THAT(std::string(spec.get_string_attribute("dpx:Packing")), Not(HasSubstr("method B")));
}

class Dither : public WrittenDepth {
protected:
    double get_mean(const std::string& name) const {
        const Image image = read_image(path(name));
        double sum = 0;
        for (const float value : image.values)
            sum += value;
        return sum / static_cast<double>(image.values.size());
    }
};

TEST_F(Dither, KeepsWhatAShallowGradientMeans) {
    const double gray = 20.3 / 255;
    write_flat("in.exr", OIIO::TypeFloat, static_cast<float>(gray), 128);
    ASSERT_THAT(copy("in.exr", "plain.png"), Succeeds());
    ASSERT_THAT(copy("in.exr", "dithered.png", {"--dither"}), Succeeds());
    EXPECT_NEAR(get_mean("plain.png") * 255, 20, 1e-3);
    EXPECT_NEAR(get_mean("dithered.png") * 255, 20.3, 4 * 0.5 / 221); // of 3 x 128 x 128 values
    ASSERT_THAT(copy("in.exr", "dithered.dpx", {"--dither", "-d", "uint10"}), Succeeds());
    EXPECT_NEAR(get_mean("dithered.dpx") * 1023, gray * 1023, 4 * 0.5 / 221);
}

TEST_F(Dither, KeepsExactValues) {
    write_ramp("in.tif", OIIO::TypeUInt8, 256);
    ASSERT_THAT(copy("in.tif", "out.png", {"--dither"}), Succeeds());
    EXPECT_EQ(read_image(path("out.png")).values, read_image(path("in.tif")).values);
}

TEST_F(Dither, IsTheSameEveryTimeWithAnyThreads) {
    write_flat("in.exr", OIIO::TypeFloat, 0.3333f, 200);
    ASSERT_THAT(copy("in.exr", "a.png", {"--dither", "--threads", "1"}), Succeeds());
    ASSERT_THAT(copy("in.exr", "b.png", {"--dither", "--threads", "4"}), Succeeds());
    EXPECT_EQ(folder.read("a.png"), folder.read("b.png"));
}

TEST_F(Dither, IsForEightAndTenBits) {
    write_flat("in.exr", OIIO::TypeHalf, 0.5f);
    for (const auto& [output, depth] :
         {std::pair("out.png", "uint16"), {"out.dpx", "uint12"}, {"out.exr", "half"}})
        EXPECT_THAT(copy("in.exr", output, {"--dither", "-d", depth}),
                    FailsWith(1, HasSubstr(std::string(depth) + " cannot be dithered, only uint8, uint10")));
    EXPECT_THAT(copy("in.exr", "out.exr", {"--dither"}),
                FailsWith(1, HasSubstr("openexr has no depth that can be dithered (uint8, uint10)")));
    EXPECT_EQ(count_files(), 1u);
}

} // namespace
