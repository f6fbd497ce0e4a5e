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
/// context of its own.
class GlEvaluator {
public:
    /// Throws GlError when this machine has no OpenGL of that profile that works without a window.
    explicit GlEvaluator(GlProfile profile);

    /// Takes the function's text and the edge^3 RGB floats of `lut3d`, red fastest. Throws GlError with the
    /// compiler's words when the text does not compile; nothing is loaded then.
    void load(const std::string& text, const float* table, int edge);
    /// Red, green, blue, alpha floats of every pixel, converted. Throws GlError, also when nothing is loaded.
    std::vector<float> run(const std::vector<float>& rgba);

    /// What the driver calls itself.
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
