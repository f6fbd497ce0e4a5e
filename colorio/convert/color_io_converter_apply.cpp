#include "colorio/color_io.h"
#include "colorio/color_io_converter.h"
#include "colorio/color_io_manager.h"
#include "colorio/convert/color_io_converter_state.h"
#include "host/of/of_app.h"
#include "host/of/of_enum.h"
#include "host/of/of_object_factory.h"

namespace {

constexpr unsigned int GPU_LUT_EDGE = 32;
constexpr unsigned int GPU_LUT_FLOATS = GPU_LUT_EDGE * GPU_LUT_EDGE * GPU_LUT_EDGE * 3;
constexpr char GPU_FUNCTION[] = "OCIODisplay";
/// What hosts account for one converter, whatever its real size.
constexpr unsigned long long MEMORY_SIZE = 24;

} // namespace

bool ColorIOConverter::convert_pixel(GMathVec4<float>& pixel) const {
    if (!is_configured())
        return false;
    if (!state->bypass)
        state->processor->apply_rgba(pixel.get_data());
    return true;
}

bool ColorIOConverter::convert_buffer(float* data, unsigned int width, unsigned int height,
                                      unsigned int channels) const {
    if (!is_enabled() || width == 0 || height == 0)
        return false;
    state->processor->apply(ocio::PackedImageDesc{data, width, height, channels});
    return true;
}

bool ColorIOConverter::convert_buffers(float* r, float* g, float* b, float* a, unsigned int width,
                                       unsigned int height) const {
    if (!is_enabled() || width == 0 || height == 0)
        return false;
    state->processor->apply(ocio::PlanarImageDesc{r, g, b, a, width, height});
    return true;
}

bool ColorIOConverter::get_gpu_shader_data(CoreString& text, CoreArray<float>& lut,
                                           GlslVersion version) const {
    if (!is_enabled())
        return false;
    const bool core_profile = version == GLSL_VERSION_CORE;
    lut.resize(GPU_LUT_FLOATS);
    const ocio::GpuShaderDesc desc{core_profile ? ocio::GPU_LANGUAGE_GLSL_1_3 : ocio::GPU_LANGUAGE_GLSL_1_0,
                                   GPU_FUNCTION, GPU_LUT_EDGE};
    text = state->processor->get_gpu_shader_text(desc).c_str();
    state->processor->get_gpu_lut_3d(lut.get_data(), desc);
    if (core_profile && !text.is_empty())
        text.replace("= texture3D(", "= texture(", true);
    return true;
}

CoreString ColorIOConverter::get_color_space(const CoreString& name) const {
    if (!state || !state->get_manager())
        return CoreString::get_null_string();
    const CoreString& wanted =
        name == ColorIO::s_default_scene_linear ? ColorIO::get_ROLE_SCENE_LINEAR() : name;
    OfApp* app = state->get_manager()->get_app();
    const OfEnum* spaces = app ? app->get_object_factory().get_enum("color_space") : nullptr;
    if (!spaces || spaces->get_value_from_label(wanted) == spaces->get_invalid_value())
        return CoreString::get_null_string();
    return wanted;
}

unsigned int ColorIOConverter::get_lut_3d_edge_size() const {
    return GPU_LUT_EDGE;
}

unsigned long long ColorIOConverter::get_memory_size() const {
    return MEMORY_SIZE;
}
