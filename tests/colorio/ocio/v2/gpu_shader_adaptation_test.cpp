#include "colorio/ocio/v2/gpu_shader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

namespace library = ocio::library;

constexpr int EDGE = 32;
constexpr std::size_t TABLE_SIZE = EDGE * EDGE * EDGE * 3;
const ocio::GpuShaderDesc CORE{ocio::GPU_LANGUAGE_GLSL_1_3, "OCIODisplay", EDGE};

// From 2.5 on the library separates declarations by kind and requires a texture's dimensions. The int
// prefers the older form where both exist.

template <class Creator>
auto declare(Creator& creator, const char* text, int) -> decltype(creator.addToDeclareShaderCode(text)) {
    creator.addToDeclareShaderCode(text);
}
template <class Creator>
void declare(Creator& creator, const char* text, long) {
    creator.addToTextureDeclareShaderCode(text);
}

template <class Creator>
auto add_row(Creator& creator, const float* values, unsigned length, int)
    -> decltype(creator.addTexture("", "", length, 1, Creator::TEXTURE_RED_CHANNEL, library::INTERP_LINEAR,
                                   values),
                void()) {
    creator.addTexture("flat", "flatSampler", length, 1, Creator::TEXTURE_RED_CHANNEL, library::INTERP_LINEAR,
                       values);
}
template <class Creator>
void add_row(Creator& creator, const float* values, unsigned length, long) {
    creator.addTexture("flat", "flatSampler", length, 1, Creator::TEXTURE_RED_CHANNEL, Creator::TEXTURE_1D,
                       library::INTERP_LINEAR, values);
}

/// What the library may generate, made by hand.
class GeneratedShader : public testing::Test {
protected:
    GeneratedShader() : generated_(library::GpuShaderDesc::CreateShaderDesc()) {
        generated_->setFunctionName("OCIODisplay");
    }

    void add_cube(const char* name, unsigned edge_len) {
        const std::vector<float> values(edge_len * edge_len * edge_len * 3, 0.5f);
        const std::string sampler = std::string(name) + "Sampler";
        generated_->add3DTexture(name, sampler.c_str(), edge_len, library::INTERP_LINEAR, values.data());
    }

    std::optional<ocio::GpuShader> adapt(const std::string& declarations, const std::string& body) {
        declare(*generated_, declarations.c_str(), 0);
        generated_->addToFunctionHeaderShaderCode(
            "vec4 OCIODisplay(vec4 inPixel)\n{\nvec4 out_pixel = inPixel;\n");
        generated_->addToFunctionShaderCode(body.c_str());
        generated_->addToFunctionFooterShaderCode("return out_pixel;\n}\n");
        generated_->finalize();
        return ocio::adapt_shader(generated_, CORE);
    }

    const std::string declaration_ = "uniform sampler3D cubeSampler;\n";
    const std::string coordinates_ =
        "vec3 cube_coords = (out_pixel.zyx * vec3(31.) + vec3(.5)) / vec3(32.);\n";
    library::GpuShaderDescRcPtr generated_;
};

TEST_F(GeneratedShader, WithoutTablesGetsTheParameterOnly) {
    const auto shader = adapt("", "out_pixel = out_pixel.bgra;\n");
    ASSERT_TRUE(shader);
    EXPECT_THAT(shader->text, HasSubstr("vec4 OCIODisplay(in vec4 inPixel, \n    const sampler3D lut3d)\n{"));
    EXPECT_TRUE(shader->lut.empty());
}

TEST_F(GeneratedShader, OfNewerVersionsSamplesUnderTheOldName) {
    add_cube("cube", EDGE);
    const auto shader =
        adapt(declaration_, coordinates_ + "out_pixel.rgb = texture(cubeSampler, cube_coords).rgb;\n");
    ASSERT_TRUE(shader);
    EXPECT_THAT(shader->text, AllOf(HasSubstr("vec3 cube_coords = (out_pixel.rgb * "),
                                    HasSubstr("out_pixel.rgb = texture3D(lut3d, cube_coords).rgb;"),
                                    Not(HasSubstr("cubeSampler"))));
    EXPECT_EQ(shader->lut.size(), TABLE_SIZE);
}

TEST_F(GeneratedShader, WithTwoTablesIsNotTaken) {
    add_cube("cube", EDGE);
    add_cube("other", EDGE);
    EXPECT_FALSE(
        adapt(declaration_, coordinates_ + "out_pixel.rgb = texture3D(cubeSampler, cube_coords).rgb;\n"));
}

TEST_F(GeneratedShader, WithAFlatTextureIsNotTaken) {
    const std::vector<float> values(16, 0.5f);
    add_row(*generated_, values.data(), 16, 0);
    EXPECT_FALSE(adapt("uniform sampler1D flatSampler;\n", ""));
}

TEST_F(GeneratedShader, WithAUniformIsNotTaken) {
    generated_->addUniform("exposure", library::GpuShaderCreator::DoubleGetter([] { return 1.0; }));
    EXPECT_FALSE(adapt("uniform float exposure;\n", "out_pixel.rgb *= exposure;\n"));
}

TEST_F(GeneratedShader, WithATableOfAnotherSizeIsNotTaken) {
    add_cube("cube", 16);
    EXPECT_FALSE(
        adapt(declaration_, coordinates_ + "out_pixel.rgb = texture3D(cubeSampler, cube_coords).rgb;\n"));
}

TEST_F(GeneratedShader, SampledWithoutKnownCoordinatesIsNotTaken) {
    add_cube("cube", EDGE);
    EXPECT_FALSE(adapt(declaration_, "out_pixel.rgb = texture3D(cubeSampler, out_pixel.zyx).rgb;\n"));
}

TEST_F(GeneratedShader, SampledTwiceIsNotTaken) {
    add_cube("cube", EDGE);
    EXPECT_FALSE(adapt(declaration_, coordinates_ + "out_pixel.rgb = texture3D(cubeSampler, cube_coords).rgb"
                                                    " + texture3D(cubeSampler, cube_coords).rgb;\n"));
}

TEST_F(GeneratedShader, WithoutADeclarationOfItsTableIsNotTaken) {
    add_cube("cube", EDGE);
    EXPECT_FALSE(adapt("", coordinates_ + "out_pixel.rgb = texture3D(cubeSampler, cube_coords).rgb;\n"));
}

} // namespace
