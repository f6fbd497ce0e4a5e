#include "gl/gl_evaluator.h"

#include <algorithm>

#include <epoxy/gl.h>

#include "gl/float_textures.h"
#include "gl/gl_error.h"

namespace gl {

namespace {

/// Pixels in one row of the textures for inputs and results.
constexpr int ROW = 1024;

constexpr char LEGACY_MAIN[] = R"(
uniform sampler2D pixels;
uniform sampler3D lut3d;
varying vec2 place;
void main() { gl_FragColor = OCIODisplay(texture2D(pixels, place), lut3d); }
)";
constexpr char CORE_MAIN[] = R"(
uniform sampler2D pixels;
uniform sampler3D lut3d;
in vec2 place;
out vec4 result;
void main() { result = OCIODisplay(texture(pixels, place), lut3d); }
)";

/// During its lifetime drawing goes into a texture.
class DrawTarget {
public:
    DrawTarget(const GlTexture& texture, int width, int height) {
        glBindFramebuffer(GL_FRAMEBUFFER, framebuffer.get());
        glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, texture.get(), 0);
        if (glCheckFramebufferStatus(GL_FRAMEBUFFER) != GL_FRAMEBUFFER_COMPLETE)
            throw GlError("the driver does not draw float pixels");
        glViewport(0, 0, width, height);
    }

private:
    GlFramebuffer framebuffer; // deleting it binds the default one
};

} // namespace

GlEvaluator::GlEvaluator(GlProfile profile) : profile(profile), context(profile), pass(profile) {}

void GlEvaluator::load(const std::string& text, const float* values, int edge) {
    context.make_current();
    program.reset();
    upload_lut(table, values, edge);
    const char* main = profile == GlProfile::CORE ? CORE_MAIN : LEGACY_MAIN;
    program.emplace(FullScreenPass::get_vertex_text(profile),
                    FullScreenPass::get_version_line(profile) + text + main);
}

std::vector<float> GlEvaluator::run(const std::vector<float>& rgba) {
    if (!program)
        throw GlError("no shader is loaded");
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
        throw GlError("the driver does not run the shader");
    values.resize(rgba.size());
    return values;
}

void GlEvaluator::draw(const GlTexture& pixels) const {
    program->use();
    glActiveTexture(GL_TEXTURE1);
    glBindTexture(GL_TEXTURE_3D, table.get());
    glActiveTexture(GL_TEXTURE0);
    glBindTexture(GL_TEXTURE_2D, pixels.get());
    glUniform1i(program->get_uniform("pixels"), 0);
    glUniform1i(program->get_uniform("lut3d"), 1);
    pass.draw();
}

std::string GlEvaluator::get_renderer() {
    context.make_current();
    const GLubyte* name = glGetString(GL_RENDERER);
    return name != nullptr ? reinterpret_cast<const char*>(name) : "unknown";
}

} // namespace gl
