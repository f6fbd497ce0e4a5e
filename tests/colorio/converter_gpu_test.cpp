#include "colorio/color_io_converter.h"

#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/colorio/host_shader_fixture.h"
#include "tests/colorio/library_differences.h"

namespace {

using testing::HasSubstr;
using testing::Not;

/// The text with every run of blanks and line ends as one blank.
std::string words_of(const std::string& text) {
    std::istringstream stream(text);
    std::string words, word;
    while (stream >> word)
        words += words.empty() ? word : " " + word;
    return words;
}

TEST_F(HostShader, IsRefusedWithoutTouchingAnythingUnlessEnabled) {
    CoreString code = "kept";
    CoreArray<float> table(7);
    table[6] = 0.5f;
    auto refused = [&] { return !converter->get_gpu_shader_data(code, table, CORE); };
    EXPECT_TRUE(refused()) << "fresh";
    ASSERT_TRUE(converter->configure("sRGB", "linear"));
    ASSERT_FALSE(converter->configure("sRGB", "sRGB"));
    EXPECT_TRUE(refused()) << "a pass-through";
    ASSERT_FALSE(converter->configure("sRGB", "no such space"));
    EXPECT_TRUE(refused()) << "failed";
    EXPECT_EQ(str(code), "kept");
    ASSERT_EQ(table.get_count(), 7u);
    EXPECT_EQ(table[6], 0.5f);
}

TEST_F(HostShader, TableIsMadeItsFixedLengthWhateverItWas) {
    ASSERT_TRUE(converter->configure("sRGB", "linear"));
    for (unsigned int count : {0u, 7u, FLOAT_COUNT, 200000u}) {
        CoreString code;
        CoreArray<float> table(count);
        ASSERT_TRUE(converter->get_gpu_shader_data(code, table, LEGACY));
        EXPECT_EQ(table.get_count(), 98304u) << count;
        EXPECT_NEAR(table[FLOAT_COUNT - 1], formula::srgb_to_linear(1.125), 1e-5) << count;
    }
}

TEST_F(HostShader, ReplacesTheTextThatWasThere) {
    ASSERT_TRUE(converter->configure("sRGB", "linear"));
    CoreString first, second = "old text";
    CoreArray<float> table;
    ASSERT_TRUE(converter->get_gpu_shader_data(first, table, LEGACY));
    ASSERT_TRUE(converter->get_gpu_shader_data(second, table, LEGACY));
    EXPECT_EQ(str(first), str(second));
}

TEST_F(HostShader, IsAFunctionOfAPixelAndATable) {
    ASSERT_TRUE(converter->configure("sRGB", "linear"));
    generate(LEGACY);
    EXPECT_THAT(words_of(code), HasSubstr("vec4 OCIODisplay(vec4 inPixel, sampler3D lut3d) {"));
    generate(CORE);
    EXPECT_THAT(words_of(code), HasSubstr("vec4 OCIODisplay(in vec4 inPixel, const sampler3D lut3d) {"));
    for (GlslVersion version : {LEGACY, CORE}) {
        generate(version);
        EXPECT_THAT(code, Not(HasSubstr("uniform"))) << "everything comes through the two parameters";
        EXPECT_THAT(code, Not(HasSubstr("#")));
    }
}

TEST_F(HostShader, SamplesTheTableInItsDialectsWords) {
    ASSERT_TRUE(converter->configure("linear", "Cineon"));
    generate(LEGACY);
    EXPECT_THAT(code, HasSubstr("= texture3D(lut3d, 0.96875 * out_pixel.rgb + 0.015625)"));
    EXPECT_THAT(code, Not(HasSubstr("= texture(")));
    generate(CORE);
    EXPECT_THAT(code, HasSubstr("= texture(lut3d, 0.96875 * out_pixel.rgb + 0.015625)"));
    EXPECT_THAT(code, Not(HasSubstr("texture3D(")));
}

TEST_F(HostShader, IsLegacyForEveryVersionButOne) {
    ASSERT_TRUE(converter->configure("sRGB", "linear"));
    generate(LEGACY);
    const std::string legacy = code;
    for (unsigned int version : {2u, 7u, 0xFFFFFFFFu}) {
        generate(static_cast<GlslVersion>(version));
        EXPECT_EQ(code, legacy) << version;
    }
    static_assert(LEGACY == 0 && CORE == 1);
}

TEST_F(HostShader, SharesOneTableBetweenTheDialects) {
    ASSERT_TRUE(converter->configure("Cineon", "sRGB"));
    generate(LEGACY);
    const std::vector<float> legacy = lut;
    generate(CORE);
    EXPECT_EQ(lut, legacy);
}

TEST_F(HostShader, IsNotMadeWhenTheColorLibraryThrowsAndTheCallerHears) {
    SKIP_WHERE_LISTED();
    write_file("double.spi1d", "Version 1\nFrom 0 1\nLength 2\nComponents 1\n{\n0\n2\n}\n");
    use_config(
        config_text({{"", "lin"}, {"", "film"}}, {{"Monitor", "Film", "film"}}, {{"scene_linear", "lin"}}) +
        "  - !<ColorSpace>\n    name: scan\n    allocation: uniform\n    allocationvars: [1, 1]\n"
        "    to_reference: !<FileTransform> {src: double.spi1d}\n");
    ASSERT_TRUE(converter->configure("scan", "lin"));
    CoreString text = "as it was";
    CoreArray<float> table;
    EXPECT_ANY_THROW(converter->get_gpu_shader_data(text, table, CORE));
    EXPECT_EQ(str(text), "as it was");
    EXPECT_EQ(table.get_count(), FLOAT_COUNT) << "made before the text is asked for";
}

} // namespace
