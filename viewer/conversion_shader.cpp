#include "viewer/conversion_shader.h"

#include <fmt/format.h>

#include "diagnostics/failure.h"
#include "gl/float_textures.h"
#include "gl/full_screen_pass.h"
#include "gl/gl_error.h"
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

std::vector<workflow::GpuConversion> get_stages(const workflow::Conversion* conversion) {
    if (!conversion)
        return {};
    try {
        return workflow::get_gpu_stages(*conversion, gl::GlProfile::CORE);
    } catch (const diagnostics::Failure& failure) {
        throw gl::GlError(failure.what());
    }
}

} // namespace

/// The functions of all conversions have one name, so each gets another.
std::string ConversionShader::make_text(const Stages& stages, std::size_t exposure_position) {
    std::string text = gl::FullScreenPass::get_version_line(gl::GlProfile::CORE) + HEAD;
    std::string body;
    for (std::size_t i = 0; i <= stages.size(); ++i) {
        if (i == exposure_position)
            body += "    color.rgb *= gain;\n";
        if (i == stages.size())
            break;
        text += fmt::format("uniform sampler3D table_{0};\n#define OCIODisplay convert_{0}\n{1}\n"
                            "#undef OCIODisplay\n",
                            i, stages[i].text);
        body += fmt::format("    color = convert_{0}(color, table_{0});\n", i);
    }
    return text + "vec4 convert(vec4 color) {\n" + body + "    return color;\n}\n" + MAIN;
}

ConversionShader::ConversionShader(const workflow::Conversion* conversion)
    : ConversionShader(get_stages(conversion), conversion ? conversion->get_exposure_position() : 0) {}

ConversionShader::ConversionShader(const Stages& stages, std::size_t exposure_position)
    : program(gl::FullScreenPass::get_vertex_text(gl::GlProfile::CORE), make_text(stages, exposure_position)),
      tables(stages.size()) {
    program.use();
    glUniform1i(program.get_uniform("image"), 0);
    for (std::size_t i = 0; i < stages.size(); ++i) {
        const auto unit = static_cast<GLint>(i + 1);
        gl::upload_lut(tables[i], stages[i].lut.data(), static_cast<int>(stages[i].edge));
        glUniform1i(program.get_uniform(fmt::format("table_{}", i).c_str()), unit);
    }
}

void ConversionShader::use(const DrawParameters& parameters) const {
    program.use();
    for (std::size_t i = 0; i < tables.size(); ++i) {
        glActiveTexture(GL_TEXTURE1 + static_cast<GLenum>(i));
        glBindTexture(GL_TEXTURE_3D, tables[i].get());
    }
    glActiveTexture(GL_TEXTURE0);
    glUniform2f(program.get_uniform("image_size"), static_cast<float>(parameters.image_width),
                static_cast<float>(parameters.image_height));
    glUniform2f(program.get_uniform("corner"), parameters.corner_x, parameters.corner_y);
    glUniform1f(program.get_uniform("zoom"), parameters.zoom);
    glUniform1f(program.get_uniform("gain"), parameters.gain);
}

} // namespace viewer
