// Images with channels or types that the format of the output cannot have.

#include "tests/tool/channels_fixture.h"

namespace {

using testing::AllOf;

using testing::HasSubstr;
using testing::Not;

constexpr double UINT10_STEP = 1.0 / 1023;
constexpr double UINT8_STEP = 1.0 / 255;

struct NarrowCase {
    const char* title;
    std::vector<std::string> channels;
    std::string output;
    std::string note; ///< Empty for none.
    std::vector<std::string> written;
};

std::ostream& operator<<(std::ostream& stream, const NarrowCase& narrow) {
    return stream << narrow.title;
}

class NarrowFormat : public ConvertChannels, public testing::WithParamInterface<NarrowCase> {};

TEST_P(NarrowFormat, GetsTheChannelsThatItSupports) {
    const NarrowCase& narrow = GetParam();
    write_channels("in.exr", narrow.channels);
    const ToolRun result = convert(narrow.output);
    ASSERT_THAT(result, Succeeds());
    if (narrow.note.empty())
        EXPECT_THAT(result.err, Not(HasSubstr("not written")));
    else
        EXPECT_THAT(result.err,
                    HasSubstr("does not support the channels " + narrow.note + ": they are not written"));
    const Image after = read_image(path(narrow.output));
    EXPECT_EQ(after.spec.channelnames, narrow.written);
    EXPECT_NEAR(after.values.front(), 0.5f, UINT8_STEP);
    EXPECT_EQ(count_files(), 2u);
}

INSTANTIATE_TEST_SUITE_P(
    All, NarrowFormat,
    testing::Values(NarrowCase{"DpxOfColor", {"R", "G", "B"}, "out.dpx", "", {"R", "G", "B"}},
                    NarrowCase{"DpxOfAlpha", {"R", "G", "B", "A"}, "out.dpx", "", {"R", "G", "B", "A"}},
                    NarrowCase{"DpxOfDepth", {"R", "G", "B", "A", "Z"}, "out.dpx", "Z", {"R", "G", "B", "A"}},
                    NarrowCase{"DpxOfOpaqueDepth", {"R", "G", "B", "Z"}, "out.dpx", "Z", {"R", "G", "B"}},
                    NarrowCase{"DpxOfLayers",
                               {"R", "G", "B", "diffuse.R", "diffuse.G", "diffuse.B"},
                               "out.dpx",
                               "diffuse.R, diffuse.G, diffuse.B",
                               {"R", "G", "B"}},
                    NarrowCase{"DpxOfGray", {"Y"}, "out.dpx", "", {"Y"}},
                    NarrowCase{"DpxOfGrayAlpha", {"Y", "A"}, "out.dpx", "A", {"Y"}},
                    NarrowCase{"PngOfGrayAlpha", {"Y", "A"}, "out.png", "", {"Y", "A"}},
                    NarrowCase{"BmpOfGrayAlpha", {"Y", "A"}, "out.bmp", "A", {"Y"}},
                    NarrowCase{"IffOfDepth", {"R", "G", "B", "A", "Z"}, "out.iff", "Z", {"R", "G", "B", "A"}},
                    NarrowCase{"IffOfGray", {"Y"}, "out.iff", "", {"R", "G", "B"}},
                    NarrowCase{"IffOfGrayAlpha", {"Y", "A"}, "out.iff", "", {"R", "G", "B", "A"}},
                    NarrowCase{"HdrOfGray", {"Y"}, "out.hdr", "", {"R", "G", "B"}}),
    [](const testing::TestParamInfo<NarrowCase>& tested) { return tested.param.title; });

TEST_F(ConvertChannels, OfWhichNothingIsLeftAreRefused) {
    write_channels("in.exr", {"R", "G"});
    folder.write("out.dpx", "what was there");
    EXPECT_THAT(
        convert("out.dpx", {"--layers", "RG"}),
        FailsWith(1, AllOf(HasSubstr("out.dpx"), HasSubstr("dpx does not support images of 2 channels"))));
    EXPECT_EQ(folder.read("out.dpx"), "what was there");
    EXPECT_EQ(count_files(), 2u);
}

TEST_F(ConvertChannels, OfOneFrameDoNotStopASequence) {
    write_channels("in.1.exr", {"R", "G", "B"});
    write_channels("in.2.exr", {"R", "G", "B", "A", "Z"});
    write_channels("in.3.exr", {"R", "G", "B"});
    const ToolRun result =
        run({"convert", path("in.#.exr"), path("out.#.dpx"), "--from", "linear", "--to", "sRGB"});
    ASSERT_THAT(result, Succeeds());
    EXPECT_THAT(result.out, HasSubstr("3 frames converted"));
    EXPECT_EQ(read_image(path("out.2.dpx")).spec.nchannels, 4);
    for (const char* name : {"out.1.dpx", "out.2.dpx", "out.3.dpx"}) // 1.055 * 0.5^(1 / 2.4) - 0.055
        EXPECT_NEAR(read_image(path(name)).get("G"), 0.735357, UINT10_STEP) << name;
}

TEST_F(ConvertChannels, OfDataAreDroppedBesideItsColor) {
    folder.write("data.ocio", "ocio_profile_version: 1\nroles:\n  default: raw\n  data: raw\n"
                              "displays:\n  Monitor:\n    - !<View> {name: Plain, colorspace: raw}\n"
                              "colorspaces:\n  - !<ColorSpace>\n    name: raw\n    isdata: true\n");
    write_channels("in.exr", {"R", "G", "B", "A", "Z"});
    const ToolRun result =
        run({"convert", path("in.exr"), path("out.dpx"), "--to", "raw", "--config", path("data.ocio")});
    ASSERT_THAT(result, Succeeds());
    EXPECT_EQ(read_image(path("out.dpx")).spec.nchannels, 4);
}

class FitsFile : public ConvertChannels, public testing::WithParamInterface<OIIO::TypeDesc> {};

TEST_P(FitsFile, IsWrittenInAllTypes) {
    const bool is_float = GetParam().is_floating_point();
    const std::string input = is_float ? "in.exr" : "in.tif";
    write_channels(input, {"R", "G", "B"}, GetParam());
    ASSERT_THAT(run({"convert", path(input), path("out.fits"), "--from", "linear", "--to", "linear"}),
                Succeeds());
    const Image after = read_image(path("out.fits"));
    EXPECT_EQ(after.spec.nchannels, 3);
    EXPECT_EQ(after.spec.format, GetParam() == OIIO::TypeUInt8 ? OIIO::TypeUInt8 : OIIO::TypeFloat);
    for (const float value : after.values)
        EXPECT_NEAR(value, 0.5f, GetParam() == OIIO::TypeUInt8 ? UINT8_STEP : 1e-5);
}

INSTANTIATE_TEST_SUITE_P(All, FitsFile,
                         testing::Values(OIIO::TypeUInt8, OIIO::TypeUInt16, OIIO::TypeHalf, OIIO::TypeFloat),
                         [](const auto& tested) { return std::string(tested.param.c_str()); });

} // namespace
