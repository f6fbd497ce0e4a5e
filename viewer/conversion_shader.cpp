#include "viewer/conversion_shader.h"

#include <string>

#include <fmt/format.h>

#include "gl/float_textures.h"
#include "gl/full_screen_pass.h"
#include "workflow/gpu_package.h"

namespace viewer {

namespace {

constexpr char HEAD[] = R"(
out vec4 result;
uniform sampler2D image;
uniform vec2 image_size;
uniform vec2 corner;
uniform float zoom;
uniform float gain;
)";
constexpr char MAIN[] = R"(
void main() {
    vec2 at = vec2(gl_FragCoord.x - corner.x, corner.y - gl_FragCoord.y) / zoom;
    bool outside = any(lessThan(at, vec2(0.0))) || any(greaterThanEqual(at, image_size));
    // A filter mixes in a little of the neighbors even at the middle of a pixel.
    vec4 color = zoom < 1.0 ? texture(image, at / image_size)
                            : texelFetch(image, ivec2(clamp(at, vec2(0.0), image_size - 1.0)), 0);
    result = outside ? vec4(vec3(0.05), 1.0) : convert(color);
}
)";

/// What shows an image without a conversion.
constexpr char GAIN_ALONE[] = R"(
vec4 OCIODisplay(in vec4 inPixel, in float gain) { return vec4(gain * inPixel.rgb, inPixel.a); }
)";

workflow::GpuConversion make_gpu_form(const workflow::Conversion* conversion) {
    if (conversion)
        return workflow::make_gpu_conversion(*conversion, gl::GlProfile::CORE);
    workflow::GpuConversion unconverted;
    unconverted.text = GAIN_ALONE;
    unconverted.takes_gain = true;
    return unconverted;
}

std::string get_lut_name(std::size_t position) {
    return fmt::format("lut_{}", position);
}

std::string make_text(const workflow::GpuConversion& conversion) {
    std::string text = gl::FullScreenPass::get_version_line(gl::GlProfile::CORE) + HEAD + conversion.text;
    std::string arguments = "color";
    for (std::size_t i = 0; i < conversion.luts.size(); ++i) {
        text += fmt::format("uniform sampler3D {};\n", get_lut_name(i));
        arguments += ", " + get_lut_name(i);
    }
    if (conversion.takes_gain)
        arguments += ", gain";
    return text + "vec4 convert(vec4 color) { return OCIODisplay(" + arguments + "); }\n" + MAIN;
}

} // namespace

ConversionShader::ConversionShader(const workflow::Conversion* conversion)
    : ConversionShader(make_gpu_form(conversion)) {}

ConversionShader::ConversionShader(const workflow::GpuConversion& conversion)
    : program(gl::FullScreenPass::get_vertex_text(gl::GlProfile::CORE), make_text(conversion)),
      luts(conversion.luts.size()) {
    program.use();
    glUniform1i(program.get_uniform("image"), 0);
    for (std::size_t i = 0; i < luts.size(); ++i) {
        gl::upload_lut(luts[i], conversion.luts[i].values.data(), static_cast<int>(conversion.luts[i].edge));
        glUniform1i(program.get_uniform(get_lut_name(i).c_str()), static_cast<GLint>(i + 1));
    }
}

void ConversionShader::use(const DrawParameters& parameters) const {
    program.use();
    for (std::size_t i = 0; i < luts.size(); ++i) {
        glActiveTexture(GL_TEXTURE1 + static_cast<GLenum>(i));
        glBindTexture(GL_TEXTURE_3D, luts[i].get());
    }
    glActiveTexture(GL_TEXTURE0);
    glUniform2f(program.get_uniform("image_size"), static_cast<float>(parameters.image_width),
                static_cast<float>(parameters.image_height));
    glUniform2f(program.get_uniform("corner"), parameters.corner_x, parameters.corner_y);
    glUniform1f(program.get_uniform("zoom"), parameters.zoom);
    glUniform1f(program.get_uniform("gain"), parameters.gain);
}

} // namespace viewer
