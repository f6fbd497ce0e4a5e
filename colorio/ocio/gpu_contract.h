#pragma once

#include <string>

#include "colorio/ocio/processor.h"

/// The shader text that the module promises, whatever the library writes.
namespace ocio {

/// "vec4 NAME(..., sampler3D lut3d)" as the shading language spells it, without a body.
std::string shader_signature(const GpuShaderDesc& desc);

/// The whole function, with statements that work on `out_pixel`; none hand the pixel back as it is.
std::string shader_text(const GpuShaderDesc& desc, const std::string& statements = {});

} // namespace ocio
