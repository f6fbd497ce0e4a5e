#pragma once

#include <string>
#include <vector>

#include "gl/gl_profile.h"
#include "workflow/conversion.h"

namespace workflow {

/// A conversion, or one stage of it, as GLSL text and a 3D LUT.
struct GpuConversion {
    std::string text;       ///< Defines `vec4 OCIODisplay(in vec4 inPixel, const sampler3D lut3d)`.
    std::vector<float> lut; ///< The 3D LUT: edge^3 RGB colors, red fastest.
    unsigned int edge;      ///< Colors along an edge of the 3D LUT: 32.
};

/// The GPU forms of the stages, in the order of their application. Throws diagnostics::Failure when one has
/// none.
std::vector<GpuConversion> get_gpu_stages(const Conversion& conversion, gl::GlProfile profile);

/// The GPU form of a conversion. Throws diagnostics::Failure for an identity, and for one with a CDL or an
/// exposure, which has several stages.
GpuConversion make_gpu_conversion(const Conversion& conversion, gl::GlProfile profile);

/// Writes the GLSL text and the 3D LUT (as .spi3d and .cube) into `folder`, which is created if missing.
/// Returns the paths. Throws diagnostics::Failure.
std::vector<std::string> write_gpu_conversion(const GpuConversion& conversion, const std::string& folder);

} // namespace workflow
