#pragma once

#include <string>
#include <vector>

#include "gl/gl_profile.h"
#include "workflow/conversion.h"

namespace workflow {

/// A 3D LUT of a shader.
struct GpuLut {
    std::vector<float> values; ///< edge^3 RGB colors, red fastest.
    unsigned int edge = 0;     ///< Colors along each edge: 32.
};

/// A conversion as a GLSL function and the 3D LUTs that it samples.
struct GpuConversion {
    /// Defines `vec4 OCIODisplay(in vec4 inPixel, const sampler3D lut3d)`. A conversion of several stages
    /// takes a LUT for each: "lut3d_0", "lut3d_1" and so on; one that changes nothing takes none. One that
    /// takes an exposure has a last parameter `in float gain`: the linear factor of the exposure, see
    /// `get_gain`.
    std::string text;
    std::vector<GpuLut> luts; ///< In the order of the parameters.
    bool takes_gain = false;
};

/// The GPU form of a conversion. Throws diagnostics::Failure when a stage has none.
GpuConversion make_gpu_conversion(const Conversion& conversion, gl::GlProfile profile);

/// Writes the GLSL text and the 3D LUTs (as .spi3d and .cube) into `folder`, which is created if missing:
/// OCIODisplay.glsl, and OCIODisplay.spi3d for one LUT, OCIODisplay_0.spi3d and so on for several. Returns
/// the paths. Throws diagnostics::Failure.
std::vector<std::string> write_gpu_conversion(const GpuConversion& conversion, const std::string& folder);

} // namespace workflow
