#include "colorio/color_io_converter.h"

#include <utility>

#include "colorio/convert/color_io_converter_state.h"
#include "colorio/facade/color_io_log.h"
#include "colorio/facade/module_boundary.h"

namespace {

constexpr unsigned int GPU_LUT_EDGE = 32;
constexpr unsigned int GPU_LUT_FLOATS = GPU_LUT_EDGE * GPU_LUT_EDGE * GPU_LUT_EDGE * 3;
constexpr char GPU_FUNCTION[] = "OCIODisplay";
/// Bytes that hosts account for one converter; not its real size.
constexpr unsigned long long MEMORY_SIZE = 24;

/// Runs `action` at the module's boundary. OpenColorIO's exceptions pass: they give the caller the reason why
/// pixels are unchanged.
template <class Action>
bool apply_at_boundary(Action&& action) {
    try {
        action();
        return true;
    } catch (const ocio::Exception& exception) {
        report_exception(LOG_ERROR, exception);
        throw;
    } catch (...) {
        log_current_exception();
        return false;
    }
}

bool refuse(const char* reason) noexcept {
    report(LOG_ERROR, diagnostics::Code::USAGE, CoreString(), reason);
    return false;
}

/// False, and reported, for a converter that was not configured; false for one with nothing to do.
bool is_ready(const ColorIOConverter& converter) noexcept {
    return converter.is_configured() ? converter.is_enabled() : refuse("the converter is not configured");
}

bool has_pixels(unsigned int width, unsigned int height) noexcept {
    return (width != 0 && height != 0) || refuse("the image has no pixels");
}

} // namespace

bool ColorIOConverter::convert_pixel(GMathVec4<float>& pixel) const {
    if (!is_configured())
        return refuse("the converter is not configured");
    return state->bypass || apply_at_boundary([&] { state->convert_pixel(pixel.get_data()); });
}

bool ColorIOConverter::convert_buffer(float* data, unsigned int width, unsigned int height,
                                      unsigned int channels) const {
    if (!is_ready(*this) || !has_pixels(width, height))
        return false;
    return apply_at_boundary([&] {
        state->processor->apply(ocio::PackedImageDesc{data, width, height, channels});
    });
}

bool ColorIOConverter::convert_buffers(float* r, float* g, float* b, float* a, unsigned int width,
                                       unsigned int height) const {
    if (!is_ready(*this) || !has_pixels(width, height))
        return false;
    return apply_at_boundary([&] {
        state->processor->apply(ocio::PlanarImageDesc{r, g, b, a, width, height});
    });
}

bool ColorIOConverter::get_gpu_shader_data(CoreString& text, CoreArray<float>& lut,
                                           GlslVersion version) const {
    if (!is_ready(*this))
        return false;
    return apply_at_boundary([&] {
        const bool core_profile = version == GLSL_VERSION_CORE;
        lut.resize(GPU_LUT_FLOATS);
        const ocio::GpuShaderDesc desc{core_profile ? ocio::GPU_LANGUAGE_GLSL_1_3
                                                    : ocio::GPU_LANGUAGE_GLSL_1_0,
                                       GPU_FUNCTION, GPU_LUT_EDGE};
        CoreString made = state->processor->get_gpu_shader_text(desc).c_str();
        state->processor->get_gpu_lut_3d(lut.get_data(), desc);
        if (core_profile)
            made.replace("= texture3D(", "= texture(", true);
        text = std::move(made);
    });
}

unsigned int ColorIOConverter::get_lut_3d_edge_size() const {
    return GPU_LUT_EDGE;
}

unsigned long long ColorIOConverter::get_memory_size() const {
    return MEMORY_SIZE;
}
