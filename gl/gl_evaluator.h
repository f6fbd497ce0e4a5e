#pragma once

#include <optional>
#include <string>
#include <vector>

#include "gl/egl_context.h"
#include "gl/full_screen_pass.h"
#include "gl/gl_object.h"
#include "gl/gl_profile.h"
#include "gl/gl_program.h"

namespace gl {

/// Runs `vec4 OCIODisplay(in vec4 inPixel, const sampler3D lut3d)` on float pixels in a fragment shader, in a
/// separate context. For one thread, the one that made it.
class GlEvaluator {
public:
    /// Throws GlError when OpenGL with that profile is not available without a window.
    explicit GlEvaluator(GlProfile profile);

    /// Loads the function's text and the edge^3 RGB floats of `lut3d`, red fastest. Throws GlError with the
    /// compiler's messages when the text does not compile; then nothing is loaded.
    void load(const std::string& text, const float* table, int edge);
    /// Converts pixels of red, green, blue, alpha floats. Throws GlError, also when nothing is loaded.
    std::vector<float> run(const std::vector<float>& rgba);

    /// The driver's name (GL_RENDERER).
    std::string get_renderer();

private:
    void draw(const GlTexture& pixels) const;

    const GlProfile profile;
    EglContext context;
    FullScreenPass pass;
    GlTexture table;
    std::optional<GlProgram> program;
};

} // namespace gl
