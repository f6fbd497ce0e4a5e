#pragma once

#include <string>
#include <vector>

#include "gl/gl_object.h"
#include "gl/gl_program.h"

namespace tool {

class ColorChain;

/// Where and how a picture is drawn, in window coordinates as OpenGL counts them: from the bottom left.
struct DrawParameters {
    float corner_x; ///< The picture's top left corner.
    float corner_y;
    float zoom;
    int picture_width;
    int picture_height;
    float gain; ///< Linear factor of the exposure.
};

/// A chain of conversions as one program for the core profile, with its tables.
class ChainShader {
public:
    /// The shader texts and tables of the chain's conversions, as the module hands them out. Null gives
    /// values times gain. Throws GlError when a text does not compile.
    explicit ChainShader(const ColorChain* chain);

    /// Makes it current: a full-screen pass then draws the picture in texture unit 0.
    void use(const DrawParameters& parameters) const;

private:
    struct StageData;
    static std::vector<StageData> get_stages(const ColorChain* chain);
    static std::string make_text(const std::vector<StageData>& stages, std::size_t gain_position);
    ChainShader(const std::vector<StageData>& stages, std::size_t gain_position);

    GlProgram program;
    std::vector<GlTexture> tables; ///< In texture units 1 and up.
};

} // namespace tool
