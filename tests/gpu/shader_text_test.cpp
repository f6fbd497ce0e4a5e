#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/colorio/library_differences.h"
#include "tests/gpu/module_fixture.h"
#include "tests/gpu/sample_cdls.h"
#include "tests/gpu/sample_configs.h"
#include "tests/gpu/shader_proof.h"
#include "tests/gpu/shader_texts.h"

namespace {

/// What the reference compiler of the language says of a text.
class ShaderTextTest : public RunningModuleTest {
protected:
    void SetUp() override {
        if (!ShaderTexts::is_compiler_installed())
            GTEST_SKIP() << "glslangValidator is not installed; apt-get install glslang-tools";
    }

    void expect_valid(const std::vector<NamedConversion>& conversions) {
        ASSERT_FALSE(conversions.empty());
        ShaderTexts texts;
        for (const NamedConversion& conversion : conversions)
            texts.add(conversion);
        EXPECT_TRUE(texts.are_valid()) << texts.get_messages();
    }
    static bool is_valid(const std::string& shader) {
        ShaderTexts texts;
        texts.add(shader);
        return texts.are_valid();
    }
};

TEST_F(ShaderTextTest, OfBuiltInSpacesViewsAndCdlsIsValidInBothDialects) {
    use_cdls(get_sample_cdls());
    expect_valid(get_spaces());
    expect_valid(get_views());
    expect_valid(get_cdls());
}

TEST_F(ShaderTextTest, OfAVersion1ConfigurationIsValidInBothDialects) {
    SKIP_WHERE_LISTED();
    use_config(write_version_1_config(folder));
    expect_valid(get_spaces());
    expect_valid(get_views());
}

TEST_F(ShaderTextTest, OfAVersion2ConfigurationIsValidInBothDialects) {
    SKIP_WHERE_LISTED();
    use_config(write_version_2_config(folder));
    expect_valid(get_spaces());
    expect_valid(get_views());
}

TEST_F(ShaderTextTest, OfOneDialectIsRefusedInTheOther) {
    ColorIOConverter converter;
    ASSERT_TRUE(converter.configure("sRGB", "linear"));
    const std::string legacy = get_shader_source(converter, ColorIOConverter::GLSL_VERSION_LEGACY).text;
    const std::string core = get_shader_source(converter, ColorIOConverter::GLSL_VERSION_CORE).text;
    EXPECT_TRUE(is_valid(make_legacy_shader(legacy)));
    EXPECT_TRUE(is_valid(make_core_shader(core, STRICT_GLSL)));
    EXPECT_FALSE(is_valid(make_core_shader(legacy, STRICT_GLSL)));
    EXPECT_FALSE(is_valid(make_legacy_shader(core)));
}

} // namespace
