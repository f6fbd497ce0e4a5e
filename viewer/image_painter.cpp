#include "viewer/image_painter.h"

#include <algorithm>

#include "diagnostics/failure.h"
#include "gl/float_textures.h"
#include "workflow/conversion.h"

namespace viewer {

namespace {

/// The image and its difference image.
constexpr std::size_t HELD_TEXTURES = 2;
/// Two views, each with and without exposure, and the one that shows differences.
constexpr std::size_t HELD_SHADERS = 5;

/// Pixels are shown as squares when enlarged and averaged when reduced.
void upload_for_display(const gl::GlTexture& texture, const Image& image) {
    check_side(image.path, image.width, image.height, get_max_side());
    gl::upload_pixels(texture, image.rgba.data(), image.width, image.height);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAX_LEVEL, 1000);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR_MIPMAP_NEAREST);
    glGenerateMipmap(GL_TEXTURE_2D);
}

/// The entry whose `key` is the wanted one, made the latest; end when there is none.
template <class Held, class Key, class Handle>
typename std::vector<Held>::iterator find_latest(std::vector<Held>& held, Key Held::*key,
                                                 const Handle& wanted) {
    const auto found =
        std::find_if(held.begin(), held.end(), [&](const Held& entry) { return entry.*key == wanted; });
    if (found == held.end())
        return found;
    std::rotate(found, found + 1, held.end());
    return held.end() - 1;
}

} // namespace

int get_max_side() {
    GLint pixels = 0;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &pixels);
    return pixels;
}

ImagePainter::ImagePainter() : pass(gl::GlProfile::CORE) {}

const gl::GlTexture& ImagePainter::get_texture(const ImageHandle& image) {
    if (const auto found = find_latest(textures, &HeldTexture::image, image); found != textures.end())
        return found->texture;
    if (textures.size() >= HELD_TEXTURES)
        textures.erase(textures.begin());
    HeldTexture held{image, {}};
    upload_for_display(held.texture, *image);
    ++upload_count;
    textures.push_back(std::move(held));
    return textures.back().texture;
}

const ConversionShader& ImagePainter::get_shader(const ConversionHandle& conversion) {
    if (const auto found = find_latest(shaders, &HeldShader::conversion, conversion); found != shaders.end())
        return found->shader;
    if (shaders.size() >= HELD_SHADERS)
        shaders.erase(shaders.begin());
    shaders.push_back({conversion, ConversionShader(conversion.get())});
    ++shader_count;
    return shaders.back().shader;
}

void ImagePainter::draw(const Subject& subject, const Viewport& viewport, const Viewport& clip,
                        const Placement& placement, int framebuffer_height) {
    const gl::GlTexture& texture = get_texture(subject.image);
    const ConversionShader& shader = get_shader(subject.conversion);
    glViewport(viewport.x, framebuffer_height - viewport.y - viewport.height, viewport.width,
               viewport.height);
    glEnable(GL_SCISSOR_TEST);
    glScissor(clip.x, framebuffer_height - clip.y - clip.height, clip.width, clip.height);
    glDisable(GL_BLEND);
    shader.use({static_cast<float>(viewport.x + placement.origin_x),
                static_cast<float>(framebuffer_height - viewport.y - placement.origin_y),
                static_cast<float>(placement.zoom), subject.image->width, subject.image->height,
                workflow::get_gain(subject.exposure)});
    glBindTexture(GL_TEXTURE_2D, texture.get());
    pass.draw();
    glDisable(GL_SCISSOR_TEST);
}

std::vector<float> ImagePainter::convert(const Subject& subject, const Viewport& rectangle) {
    const auto [x, y, width, height] = rectangle;
    GLint bound = 0;
    glGetIntegerv(GL_FRAMEBUFFER_BINDING, &bound);
    const gl::GlTexture target;
    gl::upload_pixels(target, nullptr, width, height);
    const gl::GlFramebuffer framebuffer;
    glBindFramebuffer(GL_FRAMEBUFFER, framebuffer.get());
    glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, target.get(), 0);
    if (glCheckFramebufferStatus(GL_FRAMEBUFFER) != GL_FRAMEBUFFER_COMPLETE)
        diagnostics::fail(diagnostics::Code::GPU_LIMIT, "the driver does not render to float textures");
    const Viewport whole = {0, 0, width, height};
    draw(subject, whole, whole, {-double(x), -double(y), 1}, height);
    const auto row = static_cast<std::ptrdiff_t>(width) * 4;
    std::vector<float> rgba(static_cast<std::size_t>(row * height));
    glReadPixels(0, 0, width, height, GL_RGBA, GL_FLOAT, rgba.data());
    glBindFramebuffer(GL_FRAMEBUFFER, static_cast<GLuint>(bound));
    for (int i = 0; i < height / 2; ++i)
        std::swap_ranges(rgba.begin() + i * row, rgba.begin() + (i + 1) * row,
                         rgba.begin() + (height - 1 - i) * row);
    return rgba;
}

} // namespace viewer
