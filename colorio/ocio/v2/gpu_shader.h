#pragma once

#include <optional>

#include "colorio/ocio/v2/gpu_lut.h"

namespace ocio {

/// True when the processor consists of LUTs, at least one, and of scales and offsets per channel: OpenColorIO
/// 1.x puts all of it into the 3D LUT.
bool consists_of_luts(const library::ConstProcessorRcPtr& processor);

/// True when two processors consist of the same kinds of transforms in the same order.
bool have_same_steps(const library::ConstProcessorRcPtr& first, const library::ConstProcessorRcPtr& second);

/// OpenColorIO's shader, rewritten for the module's contract: the 3D LUT is a parameter, sampled with red as
/// its fastest axis. Empty when the shader needs more than one LUT, a LUT of another size, or uniforms.
std::optional<GpuShader> adapted_shader(const library::ConstProcessorRcPtr& processor,
                                        library::OptimizationFlags optimization, const GpuShaderDesc& desc);

/// Only the rewriting of a generated text and its resources.
std::optional<GpuShader> adapt_shader(const library::ConstGpuShaderDescRcPtr& generated,
                                      const GpuShaderDesc& desc);

} // namespace ocio
