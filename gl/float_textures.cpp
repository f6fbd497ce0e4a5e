#include "gl/float_textures.h"

#include <string>

#include "diagnostics/failure.h"

namespace gl {

namespace {

void set_sampling(GLenum target, GLint filter) {
    glTexParameteri(target, GL_TEXTURE_MIN_FILTER, filter);
    glTexParameteri(target, GL_TEXTURE_MAG_FILTER, filter);
    for (GLenum axis : {GL_TEXTURE_WRAP_S, GL_TEXTURE_WRAP_T, GL_TEXTURE_WRAP_R})
        if (axis != GL_TEXTURE_WRAP_R || target == GL_TEXTURE_3D)
            glTexParameteri(target, axis, GL_CLAMP_TO_EDGE);
    glTexParameteri(target, GL_TEXTURE_MAX_LEVEL, 0);
}

void forget_errors() {
    while (glGetError() != GL_NO_ERROR) {
    }
}

void check_upload(const std::string& what) {
    if (glGetError() != GL_NO_ERROR)
        diagnostics::fail(diagnostics::Code::GPU_LIMIT, "the driver does not support " + what);
}

} // namespace

void upload_lut(const GlTexture& texture, const float* lut, int edge) {
    forget_errors();
    glBindTexture(GL_TEXTURE_3D, texture.get());
    set_sampling(GL_TEXTURE_3D, GL_LINEAR);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glTexImage3D(GL_TEXTURE_3D, 0, GL_RGB32F, edge, edge, edge, 0, GL_RGB, GL_FLOAT, lut);
    check_upload("a 3D LUT of " + std::to_string(edge) + " entries per side");
}

void upload_pixels(const GlTexture& texture, const float* rgba, int width, int height) {
    forget_errors();
    glBindTexture(GL_TEXTURE_2D, texture.get());
    set_sampling(GL_TEXTURE_2D, GL_NEAREST);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA32F, width, height, 0, GL_RGBA, GL_FLOAT, rgba);
    check_upload("a float image of " + std::to_string(width) + " x " + std::to_string(height) + " pixels");
}

} // namespace gl
