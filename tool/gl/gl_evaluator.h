#pragma once

#include <string>
#include <vector>

#include "tool/gl/headless_gl.h"

namespace tool {

/// A colour conversion for the graphics card, as the module hands it out.
struct GpuConversion {
    std::string text;         ///< Defines `vec4 OCIODisplay(in vec4 inPixel, const sampler3D lut3d)`.
    std::vector<float> table; ///< edge^3 RGB floats, red fastest.
    unsigned int edge;
};

/// Runs a conversion in a fragment shader and reads its results back. Needs a current context of the profile;
/// its textures and programs are its own.
class GlEvaluator {
public:
    /// Throws GlError with the compiler's words when the text does not compile.
    GlEvaluator(GlProfile profile, const GpuConversion& conversion);
    ~GlEvaluator();
    GlEvaluator(const GlEvaluator&) = delete;
    GlEvaluator& operator=(const GlEvaluator&) = delete;

    /// Red, green, blue, alpha floats of every pixel, converted. Throws GlError.
    std::vector<float> evaluate(const std::vector<float>& rgba) const;

private:
    void build_program(GlProfile profile, const std::string& text);
    unsigned int compile(unsigned int kind, const std::string& text) const;
    void upload_table(const GpuConversion& conversion);
    void draw(unsigned int inputs, int width, int height) const;

    unsigned int program = 0;
    unsigned int table = 0;
    unsigned int triangle = 0;
    unsigned int triangle_layout = 0;
};

} // namespace tool
