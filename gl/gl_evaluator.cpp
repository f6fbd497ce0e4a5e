#include "gl/gl_evaluator.h"

#include <algorithm>

#include <epoxy/gl.h>

#include "diagnostics/failure.h"
#include "gl/float_textures.h"

namespace gl {

namespace {

/// Pixels in one row of the textures for inputs and results.
constexpr int ROW = 1024;

std::string get_lut_name(std::size_t position) {
    return "lut3d_" + std::to_string(position);
}

/// Calls the function for the pixel at `place`.
std::string make_main(GlProfile profile, std::size_t lut_count, const std::string& last_argument) {
    const bool is_core = profile == GlProfile::CORE;
    std::string head = "uniform sampler2D pixels;\n";
    head += is_core ? "in vec2 place;\nout vec4 result;\n" : "varying vec2 place;\n";
    std::string arguments = is_core ? "texture(pixels, place)" : "texture2D(pixels, place)";
    for (std::size_t i = 0; i < lut_count; ++i) {
        head += "uniform sampler3D " + get_lut_name(i) + ";\n";
        arguments += ", " + get_lut_name(i);
    }
    if (!last_argument.empty())
        arguments += ", " + last_argument;
    return "\n" + head + "void main() { " + (is_core ? "result" : "gl_FragColor") + " = OCIODisplay(" +
           arguments + "); }\n";
}

/// During its lifetime drawing goes into a texture.
class DrawTarget {
public:
    DrawTarget(const GlTexture& texture, int width, int height) {
        glBindFramebuffer(GL_FRAMEBUFFER, framebuffer.get());
        glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, texture.get(), 0);
        if (glCheckFramebufferStatus(GL_FRAMEBUFFER) != GL_FRAMEBUFFER_COMPLETE)
            diagnostics::fail(diagnostics::Code::GPU_LIMIT, "the driver does not render to float textures");
        glViewport(0, 0, width, height);
    }

private:
    GlFramebuffer framebuffer; // deleting it binds the default one
};

} // namespace

GlEvaluator::GlEvaluator(GlProfile profile) : profile(profile), context(profile), pass(profile) {}

void GlEvaluator::load(const std::string& text, const std::vector<Lut3d>& values,
                       const std::string& last_argument) {
    context.make_current();
    program.reset();
    luts.clear();
    for (const Lut3d& lut : values)
        upload_lut(luts.emplace_back(), lut.values, lut.edge);
    program.emplace(FullScreenPass::get_vertex_text(profile),
                    FullScreenPass::get_version_line(profile) + text +
                        make_main(profile, luts.size(), last_argument));
}

std::vector<float> GlEvaluator::run(const std::vector<float>& rgba) {
    if (!program)
        diagnostics::fail(diagnostics::Code::USAGE_REFUSED, "no shader is loaded");
    if (rgba.empty())
        return {};
    context.make_current();
    const auto count = static_cast<int>(rgba.size() / 4);
    const int width = std::min(count, ROW);
    const int height = (count + width - 1) / width;
    std::vector<float> values = rgba;
    values.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4);

    const GlTexture inputs, results;
    upload_pixels(inputs, values.data(), width, height);
    upload_pixels(results, nullptr, width, height);
    const DrawTarget target(results, width, height);
    draw(inputs);
    glReadPixels(0, 0, width, height, GL_RGBA, GL_FLOAT, values.data());
    if (glGetError() != GL_NO_ERROR)
        diagnostics::fail(diagnostics::Code::GPU_LIMIT, "the driver does not run the shader");
    values.resize(rgba.size());
    return values;
}

void GlEvaluator::draw(const GlTexture& pixels) const {
    program->use();
    for (std::size_t i = 0; i < luts.size(); ++i) {
        const auto unit = static_cast<GLint>(i + 1);
        glActiveTexture(GL_TEXTURE0 + static_cast<GLenum>(unit));
        glBindTexture(GL_TEXTURE_3D, luts[i].get());
        glUniform1i(program->get_uniform(get_lut_name(i).c_str()), unit);
    }
    glActiveTexture(GL_TEXTURE0);
    glBindTexture(GL_TEXTURE_2D, pixels.get());
    glUniform1i(program->get_uniform("pixels"), 0);
    pass.draw();
}

std::string GlEvaluator::get_renderer() {
    context.make_current();
    const GLubyte* name = glGetString(GL_RENDERER);
    return name != nullptr ? reinterpret_cast<const char*>(name) : "unknown";
}

} // namespace gl
