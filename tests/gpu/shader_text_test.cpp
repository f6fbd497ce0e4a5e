#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/gpu/module_fixture.h"
#include "tests/gpu/sample_cdls.h"
#include "tests/gpu/sample_configs.h"
#include "tests/gpu/shader_proof.h"

namespace {

using GlslVersion = ColorIOConverter::GlslVersion;

/// A fragment shader of a core profile around the text of a conversion.
std::string make_core_shader(const std::string& text, const std::string& version) {
    return "#version " + version +
           " core\nin vec2 place;\nout vec4 result;\nuniform sampler2D picture;\nuniform sampler3D table;\n" +
           text + "\nvoid main() { result = OCIODisplay(texture(picture, place), table); }\n";
}

/// The same of GLSL 1.20.
std::string make_legacy_shader(const std::string& text) {
    return "#version 120\nvarying vec2 place;\nuniform sampler2D picture;\nuniform sampler3D table;\n" +
           text + "\nvoid main() { gl_FragColor = OCIODisplay(texture2D(picture, place), table); }\n";
}

/// From this version on the compiler knows no texture3D any more; in 3.30 it lets it pass.
constexpr char STRICT_VERSION[] = "420";

/// What the reference compiler of the language says of a text.
class ShaderTextTest : public RunningModuleTest {
protected:
    void SetUp() override {
        if (std::system("glslangValidator --version > /dev/null 2>&1") != 0)
            GTEST_SKIP() << "glslangValidator is not installed; apt-get install glslang-tools";
    }

    void collect(const std::vector<NamedConversion>& conversions) {
        for (const NamedConversion& conversion : conversions) {
            add(conversion, make_legacy_shader(get_text(conversion, ColorIOConverter::GLSL_VERSION_LEGACY)));
            const std::string core = get_text(conversion, ColorIOConverter::GLSL_VERSION_CORE);
            for (const char* version : {"330", STRICT_VERSION})
                add(conversion, make_core_shader(core, version));
        }
    }

    static std::string get_text(const NamedConversion& conversion, GlslVersion version) {
        return get_shader_source(*conversion.converter, version).text;
    }
    void add(const NamedConversion& conversion, const std::string& shader) {
        files += " " + folder.write("shader" + std::to_string(count++) + ".frag",
                                    shader + "// " + conversion.name + "\n");
    }

    void expect_valid() const {
        ASSERT_GT(count, 0u);
        EXPECT_EQ(run("glslangValidator" + files), 0) << output_of_last_run();
    }
    int run(const std::string& command) const {
        return std::system((command + " > " + folder.file("output") + " 2>&1").c_str());
    }
    std::string output_of_last_run() const { return folder.read("output"); }

    std::string files;
    unsigned int count = 0;
};

TEST_F(ShaderTextTest, OfBuiltInSpacesViewsAndCdlsIsValidInBothDialects) {
    use_cdls(get_sample_cdls());
    collect(get_spaces());
    collect(get_views());
    collect(get_cdls());
    expect_valid();
}

TEST_F(ShaderTextTest, OfAVersion1ConfigurationIsValidInBothDialects) {
    use_config(write_version_1_config(folder));
    collect(get_spaces());
    collect(get_views());
    expect_valid();
}

TEST_F(ShaderTextTest, OfAVersion2ConfigurationIsValidInBothDialects) {
    use_config(write_version_2_config(folder));
    collect(get_spaces());
    collect(get_views());
    expect_valid();
}

TEST_F(ShaderTextTest, OfOneDialectIsRefusedInTheOther) {
    ColorIOConverter converter;
    ASSERT_TRUE(converter.configure("sRGB", "linear"));
    const std::string legacy = get_shader_source(converter, ColorIOConverter::GLSL_VERSION_LEGACY).text;
    const std::string core = get_shader_source(converter, ColorIOConverter::GLSL_VERSION_CORE).text;
    const std::string swapped[] = {folder.write("a.frag", make_core_shader(legacy, STRICT_VERSION)),
                                   folder.write("b.frag", make_legacy_shader(core))};
    for (const std::string& file : swapped)
        EXPECT_NE(run("glslangValidator " + file), 0) << output_of_last_run();
}

} // namespace
