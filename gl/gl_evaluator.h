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

/// A 3D LUT: edge^3 RGB floats, red fastest.
struct Lut3d {
    const float* values;
    int edge;
};

/// Runs `vec4 OCIODisplay(in vec4 inPixel, const sampler3D lut3d)` on float pixels in a fragment shader, in a
/// separate context. The function may take any number of 3D LUTs. For one thread, the one that made it.
class GlEvaluator {
public:
    /// Throws diagnostics::Failure (GPU_UNAVAILABLE) when OpenGL with that profile is not available without a
    /// window.
    explicit GlEvaluator(GlProfile profile);

    /// Loads the function's text and the 3D LUTs that it takes after the pixel. `last_argument` is a GLSL
    /// expression for a parameter after these; empty without one. Throws diagnostics::Failure with the
    /// compiler's messages when the text does not compile; then nothing is loaded.
    void load(const std::string& text, const std::vector<Lut3d>& luts, const std::string& last_argument = {});
    /// Converts pixels of red, green, blue, alpha floats. Throws diagnostics::Failure, also when nothing is
    /// loaded.
    std::vector<float> run(const std::vector<float>& rgba);

    /// The driver's name (GL_RENDERER).
    std::string get_renderer();

private:
    void draw(const GlTexture& pixels) const;

    const GlProfile profile;
    EglContext context;
    FullScreenPass pass;
    std::vector<GlTexture> luts;
    std::optional<GlProgram> program;
};

} // namespace gl
