#include <algorithm>
#include <cctype>
#include <cstdio>
#include <filesystem>
#include <limits>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "colorio/color_io.h"
#include "tests/colorio/library_differences.h"
#include "tests/gpu/module_fixture.h"
#include "tests/gpu/shader_proof.h"
#include "tests/gpu/shader_texts.h"
#include "tests/support/test_configs.h"

namespace {

using GlslVersion = ColorIOConverter::GlslVersion;

constexpr GlslVersion DIALECTS[] = {ColorIOConverter::GLSL_VERSION_LEGACY,
                                    ColorIOConverter::GLSL_VERSION_CORE};

/// Probe pixels on which a shader is to be compared, of some 6000.
constexpr size_t MIN_PIXELS = 1000;

size_t count(const std::string& text, const std::string& word) {
    size_t found = 0;
    for (size_t at = text.find(word); at != std::string::npos; at = text.find(word, at + word.size()))
        ++found;
    return found;
}

/// What was found over conversions of one kind, in both dialects.
struct Findings {
    const char* kind;
    size_t conversions = 0;
    size_t refused = 0; ///< Conversions that the module does not make.
    size_t shaders = 0;
    size_t tables = 0;                                         ///< Shaders that look something up.
    size_t pixels = 0;                                         ///< Compared, over all shaders.
    size_t fewest_pixels = std::numeric_limits<size_t>::max(); ///< That one shader was compared on.
    std::string fewest_name = "none";
    double largest_error = 0;
    std::string worst = "none"; ///< The conversion of the largest error, and the pixel.

    void add(const std::string& name, const ShaderReport& shader) {
        ++shaders;
        tables += shader.uses_table;
        pixels += shader.pixels;
        if (shader.pixels < fewest_pixels) {
            fewest_pixels = shader.pixels;
            fewest_name = name;
        }
        if (shader.largest_error <= largest_error)
            return;
        largest_error = shader.largest_error;
        worst = name + ", " + shader.largest_place;
    }
    void print() const {
        std::printf("  %zu %s, %zu refused, %zu shaders with a table, largest difference %.3g (%s)\n",
                    conversions, kind, refused, tables, largest_error, worst.c_str());
        if (shaders > 0)
            std::printf("    %zu pixels compared, at least %zu by a shader (%s)\n", pixels, fewest_pixels,
                        fewest_name.c_str());
        testing::Test::RecordProperty(std::string(kind) + "_largest_error", std::to_string(largest_error));
    }
};

/// Every conversion of a whole configuration, by the module's shaders and on the CPU.
class WholeConfigOnGpu : public RunningModuleTest, public testing::WithParamInterface<std::string> {
protected:
    static void SetUpTestSuite() { runners = new ShaderRunners; }
    static void TearDownTestSuite() {
        delete runners;
        runners = nullptr;
    }

    /// Scene-linear light through every active view.
    void prove_views() {
        const CoreString scene_linear = ColorIO::get_ROLE_SCENE_LINEAR();
        for (const CoreString& label : ColorIO::get_display_view_names()) {
            CoreString display, view;
            ASSERT_TRUE(ColorIO::get_display_view(label, display, view)) << label.get_data();
            prove(views, "scene-linear light through " + std::string(label.view()),
                  [&, d = display, v = view](ColorIOConverter& converter) {
                      return converter.configure_for_display(scene_linear, d, v);
                  });
        }
    }
    /// Each color space to one far down the list, so that each is left once and entered once.
    void prove_pairs() {
        const CoreBasicArray<CoreString>& spaces = ColorIO::get_color_space_names();
        const unsigned int space_count = spaces.get_count();
        const unsigned int step = space_count / 2 + space_count % 2;
        for (unsigned int i = 0; i < space_count && space_count > 1; ++i) {
            const CoreString &source = spaces[i], &destination = spaces[(i + step) % space_count];
            prove(pairs, std::string(source.view()) + " to " + std::string(destination.view()),
                  [&](ColorIOConverter& converter) { return converter.configure(source, destination); });
        }
    }
    void expect_valid_texts() {
        if (!ShaderTexts::is_compiler_installed()) {
            std::printf("  glslangValidator is not installed; apt-get install glslang-tools\n");
            return;
        }
        EXPECT_TRUE(texts.are_valid()) << texts.get_messages();
    }

    Findings views{"views"};
    Findings pairs{"pairs"};

private:
    template <class Configure>
    void prove(Findings& findings, const std::string& name, const Configure& configure) {
        SCOPED_TRACE(name);
        ++findings.conversions;
        NamedConversion conversion = {name, std::make_unique<ColorIOConverter>()};
        if (!configure(*conversion.converter)) {
            ++findings.refused;
            const std::string reason = take_messages();
            EXPECT_NE(reason, "") << "refused without a word";
            std::printf("  refused: %s: %s\n", name.c_str(), reason.c_str());
            return;
        }
        texts.add(conversion);
        for (const GlslVersion version : DIALECTS) {
            const std::string text = get_shader_source(*conversion.converter, version).text;
            EXPECT_EQ(count(text, "sampler"), 1u) << "its one table comes as the parameter";
            EXPECT_EQ(count(text, "uniform"), 0u);
            const ShaderReport shader = prove_shader(*runners, *conversion.converter, version);
            EXPECT_GE(shader.pixels, MIN_PIXELS) << "too few lie in the range of the table";
            findings.add(name, shader);
        }
    }

    ShaderTexts texts;
    static ShaderRunners* runners;
};
ShaderRunners* WholeConfigOnGpu::runners = nullptr;

TEST_P(WholeConfigOnGpu, ShowsWhatTheCpuConverts) {
    SKIP_WHERE_LISTED();
    const std::filesystem::path path(GetParam());
    const std::string name = (path.parent_path().filename() / path.filename()).string();
    if (!try_config(path)) {
        const std::string reason = take_messages();
        ASSERT_NE(reason, "") << "refused without a word";
        GTEST_SKIP() << name << " is refused: " << reason;
    }
    prove_views();
    prove_pairs();
    expect_valid_texts();
    EXPECT_GT(views.conversions + pairs.conversions, views.refused + pairs.refused);
    std::printf("%s\n", name.c_str());
    views.print();
    pairs.print();
}

/// "3_config" for the fourth file, config.ocio.
std::string name_config(const testing::TestParamInfo<std::string>& info) {
    std::string name = std::to_string(info.index) + "_" + std::filesystem::path(info.param).stem().string();
    std::replace_if(
        name.begin(), name.end(), [](unsigned char letter) { return std::isalnum(letter) == 0; }, '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(Configs, WholeConfigOnGpu, testing::ValuesIn(find_test_configs()), name_config);

} // namespace
