#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "colorio/ocio/processor.h"

/// Shaders as the module asks OpenColorIO for them.
namespace gpu_shader {

inline constexpr int EDGE = 32;
inline constexpr std::size_t TABLE_SIZE = EDGE * EDGE * EDGE * 3;

inline ocio::GpuShaderDesc describe(ocio::GpuLanguage language, int edge_len = EDGE) {
    return {language, "OCIODisplay", edge_len};
}

inline const ocio::GpuShaderDesc LEGACY = describe(ocio::GPU_LANGUAGE_GLSL_1_0);
inline const ocio::GpuShaderDesc CORE = describe(ocio::GPU_LANGUAGE_GLSL_1_3);

inline std::vector<float> table_of(const ocio::ConstProcessorRcPtr& processor,
                                   const ocio::GpuShaderDesc& desc = CORE) {
    std::vector<float> table(TABLE_SIZE, -7.0f);
    processor->get_gpu_lut_3d(table.data(), desc);
    return table;
}

/// How the function of the module's contract begins.
inline std::string signature(const ocio::GpuShaderDesc& desc) {
    return desc.language == ocio::GPU_LANGUAGE_GLSL_1_3
               ? "vec4 OCIODisplay(in vec4 inPixel, \n    const sampler3D lut3d)"
               : "vec4 OCIODisplay(vec4 inPixel, \n    sampler3D lut3d)";
}

/// The triple at a node of the LUT.
inline const float* at(const std::vector<float>& table, int red, int green, int blue) {
    return &table[static_cast<std::size_t>(((blue * EDGE + green) * EDGE + red) * 3)];
}

} // namespace gpu_shader
