#pragma once

#include <string>

#include "colorio/ocio/processor.h"

/// The form of the module's shader text, which does not depend on OpenColorIO's.
namespace ocio {

/// "vec4 NAME(..., sampler3D lut3d)" as the shading language spells it, without a body.
std::string shader_signature(const GpuShaderDesc& desc);

/// The whole function with `statements` that change `out_pixel`; empty ones return the pixel unchanged.
std::string shader_text(const GpuShaderDesc& desc, const std::string& statements = {});

} // namespace ocio
