#pragma once

#include <string>
#include <vector>

#include "gl/gl_object.h"
#include "gl/gl_program.h"

namespace workflow {
class Conversion;
struct GpuConversion;
} // namespace workflow

namespace viewer {

/// Where and how an image is drawn, in window coordinates as OpenGL counts them: from the bottom left.
struct DrawParameters {
    float corner_x; ///< The image's top left corner.
    float corner_y;
    float zoom;
    int image_width;
    int image_height;
    float gain; ///< Linear factor of the exposure.
};

/// The parts of a conversion as one program for the core profile, with their 3D LUTs.
class ConversionShader {
public:
    /// Uses the module's shader texts and 3D LUTs of the conversion's parts. Null: values times gain. Throws
    /// GlError when a text does not compile.
    explicit ConversionShader(const workflow::Conversion* conversion);

    /// Makes it current: a full-screen pass then draws the image in texture unit 0.
    void use(const DrawParameters& parameters) const;

private:
    using Stages = std::vector<workflow::GpuConversion>;

    static std::string make_text(const Stages& stages, std::size_t exposure_position);
    ConversionShader(const Stages& stages, std::size_t exposure_position);

    gl::GlProgram program;
    std::vector<gl::GlTexture> tables; ///< In texture units 1 and up.
};

} // namespace viewer
