#pragma once

#include <string>
#include <vector>

#include "colorio/ocio/processor.h"

namespace ocio {

/// How the values of a color space are fitted to [0, 1], so that a 3D LUT can be looked up with them.
/// Uniform: minimum and maximum, by default 0 and 1. Lg2: minimum and maximum of the base-2 logarithm, by
/// default -10 and 6, and an offset added to the value before the logarithm is taken, by default 0.
struct GpuAllocation {
    Allocation kind = ALLOCATION_UNIFORM;
    std::vector<float> variables;
};

/// Shader text and its 3D LUT. Without a LUT the text does not sample it.
struct GpuShader {
    std::string text;
    std::vector<float> lut; ///< edge^3 RGB triples, red fastest
};

/// A shader that maps the pixel to [0, 1] by `allocation` and looks up its color in a 3D LUT, whose nodes
/// were converted by `processor`. Throws when the allocation has an empty range.
GpuShader baked_shader(const Processor& processor, const GpuAllocation& allocation,
                       const GpuShaderDesc& desc);

} // namespace ocio
