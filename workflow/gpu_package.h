#pragma once

#include <string>
#include <vector>

#include "gl/gl_profile.h"
#include "workflow/conversion.h"

namespace workflow {

/// A conversion for the graphics card, as the module hands it out.
struct GpuConversion {
    std::string text;       ///< Defines `vec4 OCIODisplay(in vec4 inPixel, const sampler3D lut3d)`.
    std::vector<float> lut; ///< edge^3 RGB floats, red fastest.
    unsigned int edge;
};

/// The conversion as a viewer takes it. Throws diagnostics::Failure when it has none.
GpuConversion make_gpu_conversion(const Conversion& conversion, gl::GlProfile profile);

/// Writes the text and the 3D LUT (as .spi3d and .cube) into `folder`, which is made when it is missing.
/// Answers the paths. Throws diagnostics::Failure.
std::vector<std::string> write_gpu_conversion(const GpuConversion& conversion, const std::string& folder);

} // namespace workflow
