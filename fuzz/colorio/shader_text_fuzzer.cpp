// Any text as the shader that OpenColorIO generates: the rewriting for the module's contract gives the
// promised form or declines.

#include <cstdint>
#include <string>
#include <vector>

#include <fuzzer/FuzzedDataProvider.h>

#include "colorio/ocio/v2/gpu_shader.h"
#include "fuzz/colorio/fuzz_module.h"

namespace {

constexpr int EDGE = 2;
constexpr const char* TEXTURE = "ocio_lut3d_0";
constexpr const char* SAMPLER = "ocio_lut3d_0Sampler";

/// What the library writes, in pieces that an input puts together or replaces.
constexpr const char* PIECES[] = {
    "uniform sampler3D ocio_lut3d_0Sampler;\n",
    "vec4 OCIODisplay(vec4 inPixel)\n{\n  vec4 out_pixel = inPixel;\n",
    "    vec3 ocio_lut3d_0_coords = (out_pixel.zyx * vec3(1.) + vec3(0.5)) / vec3(2.);\n",
    "    out_pixel.rgb = texture3D(ocio_lut3d_0Sampler, ocio_lut3d_0_coords).rgb;\n",
    "    out_pixel.rgb = texture(ocio_lut3d_0Sampler, ocio_lut3d_0_coords).rgb;\n",
    "  return out_pixel;\n}\n",
    "ocio_lut3d_0Sampler",
    "lut3d",
};

std::string make_text(FuzzedDataProvider& input) {
    std::string text;
    while (input.remaining_bytes() > 0) {
        const std::size_t choice = input.ConsumeIntegralInRange<std::size_t>(0, std::size(PIECES));
        text +=
            choice < std::size(PIECES) ? std::string(PIECES[choice]) : input.ConsumeRandomLengthString(64);
    }
    return text;
}

std::size_t count(const std::string& text, const std::string& part) {
    std::size_t found = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + part.size()))
        ++found;
    return found;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    const bool is_core = input.ConsumeBool();
    const bool has_table = input.ConsumeBool();
    auto generated = ocio::library::GpuShaderDesc::CreateShaderDesc();
    if (has_table) {
        const std::vector<float> values(EDGE * EDGE * EDGE * 3, 0.5f);
        generated->add3DTexture(TEXTURE, SAMPLER, EDGE, ocio::library::INTERP_LINEAR, values.data());
    }
    const std::string text = make_text(input);
    generated->addToFunctionShaderCode(text.c_str());
    generated->finalize();

    const ocio::GpuShaderDesc desc{is_core ? ocio::GPU_LANGUAGE_GLSL_1_3 : ocio::GPU_LANGUAGE_GLSL_1_0,
                                   "OCIODisplay", EDGE};
    const auto shader = ocio::adapt_shader(generated, desc);
    if (!shader)
        return 0;
    require(count(shader->text, "vec4 OCIODisplay(vec4 inPixel)") == 0);
    require(count(shader->text, "sampler3D lut3d)") >= 1);
    require(shader->lut.size() == (has_table ? EDGE * EDGE * EDGE * 3 : 0));
    if (has_table) {
        require(count(shader->text, "= texture3D(lut3d,") >= 1);
        require(count(shader->text, SAMPLER) == 0);
    }
    return 0;
}
