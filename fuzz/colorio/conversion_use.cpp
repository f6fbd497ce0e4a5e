#include "fuzz/colorio/conversion_use.h"

#include <cstring>
#include <exception>
#include <string>

#include "fuzz/colorio/fuzz_module.h"

namespace {

unsigned int count(const std::string& text, const std::string& part) {
    unsigned int found = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + part.size()))
        ++found;
    return found;
}

void check_shader(const ColorIOConverter& converter, ColorIOConverter::GlslVersion version) {
    CoreString glsl;
    CoreArray<float> lut;
    require(converter.get_gpu_shader_data(glsl, lut, version));
    const std::string text(glsl.view());
    const bool is_core = version == ColorIOConverter::GLSL_VERSION_CORE;
    require(count(text, "vec4 OCIODisplay(") == 1);
    require(count(text, "sampler3D lut3d)") == 1);
    require(count(text, "uniform ") == 0);
    require(count(text, "{") == count(text, "}"));
    require(count(text, is_core ? "texture3D(" : "= texture(") == 0);
    require(count(text, is_core ? "= texture(lut3d," : "= texture3D(lut3d,") <= 1);
    const unsigned int edge = converter.get_lut_3d_edge_size();
    require(lut.get_count() == edge * edge * edge * 3);
}

/// Equal bits, or both not a number.
bool is_same(float a, float b) {
    return std::memcmp(&a, &b, sizeof a) == 0 || (a != a && b != b);
}

void check_pixels(const ColorIOConverter& converter) {
    constexpr unsigned int PIXELS = 3;
    const float values[PIXELS][4] = {{0.18f, 0.5f, 0.02f, 1}, {-0.1f, 4, 70000, 0.5f}, {0, 1, 1e-8f, 0}};
    float buffer[PIXELS][4];
    std::memcpy(buffer, values, sizeof buffer);
    require(converter.convert_buffer(buffer[0], PIXELS, 1, 4));
    for (unsigned int i = 0; i < PIXELS; ++i) {
        GMathVec4<float> pixel(values[i][0], values[i][1], values[i][2], values[i][3]);
        require(converter.convert_pixel(pixel));
        for (int channel = 0; channel < 4; ++channel)
            require(is_same(pixel.get_data()[channel], buffer[i][channel]));
    }
}

/// An expected exception of applying: the host reports the conversion that failed.
template <class Use>
void ignore_exceptions(const Use& use) {
    try {
        use();
    } catch (const std::exception&) {
    }
}

} // namespace

void use_converter(const ColorIOConverter& converter) {
    ignore_exceptions([&] { check_pixels(converter); });
}

void use_shaders(const ColorIOConverter& converter) {
    ignore_exceptions([&] {
        check_shader(converter, ColorIOConverter::GLSL_VERSION_LEGACY);
        check_shader(converter, ColorIOConverter::GLSL_VERSION_CORE);
    });
}
