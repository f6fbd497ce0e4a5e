// What --dry-run says of images that cannot be converted.

#include "tests/tool/channels_fixture.h"
#include "tests/tool/native_image.h"

namespace {

using testing::HasSubstr;

/// A plan must not promise what the conversion refuses.
class ConvertPlan : public ConvertChannels {
protected:
    /// Runs the conversion with and without --dry-run; both fail in the same way, and write nothing.
    void expect_same_error(const std::string& output, const std::string& error,
                           const std::vector<std::string>& more = {}) {
        const size_t files = count_files();
        std::vector<std::string> planned = more;
        planned.push_back("--dry-run");
        const ToolRun plan = convert(output, planned);
        EXPECT_THAT(plan, FailsWith(1, HasSubstr(error)));
        EXPECT_EQ(plan.out, "");
        EXPECT_EQ(plan.err, convert(output, more).err);
        EXPECT_EQ(count_files(), files);
    }
};

TEST_F(ConvertPlan, OfAMissingInputFails) {
    expect_same_error("out.exr", "in.exr");
}

TEST_F(ConvertPlan, OfUnknownLayersFails) {
    write_channels("in.exr", {"R", "G", "B"});
    expect_same_error("out.exr", "it has no layer 'nope'", {"--layers", "nope"});
}

TEST_F(ConvertPlan, IntoAMissingFolderFails) {
    write_channels("in.exr", {"R", "G", "B"});
    expect_same_error("missing/out.exr", "missing/out.exr");
}

TEST_F(ConvertPlan, OfDataFails) {
    write_native(path("in.exr"),
                 {make_native_image(
                     2, 2, {{"R", OIIO::TypeUInt32}, {"G", OIIO::TypeUInt32}, {"B", OIIO::TypeUInt32}})});
    expect_same_error("out.exr", "no color channels to convert: rgba (integers)");
}

TEST_F(ConvertPlan, OfDeepSamplesToAFlatFormatFails) {
    write_deep(path("in.exr"),
               {make_deep_image(
                   1, 1, {{"R", OIIO::TypeFloat}, {"G", OIIO::TypeFloat}, {"B", OIIO::TypeFloat}}, {2})});
    expect_same_error("out.png", "png does not support deep images");
}

TEST_F(ConvertPlan, OfUnsupportedChannelsFails) {
    write_channels("in.exr", {"R", "G"});
    expect_same_error("out.dpx", "dpx does not support images of 2 channels", {"--layers", "RG"});
}

TEST_F(ConvertPlan, NamesTheLayersThatAreConverted) {
    write_channels("in.exr", {"R", "G", "B", "diffuse.R", "diffuse.G", "diffuse.B", "N.X", "N.Y", "N.Z"});
    EXPECT_THAT(convert("out.exr", {"--dry-run"}).out,
                HasSubstr("would convert: convert rgba, diffuse; leave N"));
    EXPECT_THAT(convert("out.exr", {"--dry-run", "--json"}).out,
                HasSubstr(R"("layers":["rgba","diffuse"],"left":[{"name":"N","reason":"data"}])"));
    EXPECT_THAT(convert("out.png", {"--dry-run", "--layers", "diffuse"}).out,
                HasSubstr("would convert: convert diffuse"));
}

TEST_F(ConvertPlan, LeavesAnExistingOutput) {
    write_channels("in.exr", {"R", "G", "B"});
    folder.write("out.exr", "what was there");
    const ToolRun result = convert("out.exr", {"--dry-run"});
    ASSERT_THAT(result, Succeeds());
    EXPECT_THAT(result.out, HasSubstr("would convert"));
    EXPECT_EQ(folder.read("out.exr"), "what was there");
    EXPECT_EQ(count_files(), 2u);
}

} // namespace
