#pragma once

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
    float
        gain; ///< Linear factor of the exposure; only for conversions that take an exposure, and without one.
};

/// A conversion as a program for the core profile that draws an image, with its 3D LUTs.
class ConversionShader {
public:
    /// Null: values times gain. Throws diagnostics::Failure when a stage has no GPU form, or when the driver
    /// does not support it.
    explicit ConversionShader(const workflow::Conversion* conversion);

    /// Makes it current: a full-screen pass then draws the image in texture unit 0.
    void use(const DrawParameters& parameters) const;

private:
    explicit ConversionShader(const workflow::GpuConversion& conversion);

    gl::GlProgram program;
    std::vector<gl::GlTexture> luts; ///< In texture units 1 and up.
};

} // namespace viewer
