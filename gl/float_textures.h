#pragma once

#include "gl/gl_object.h"

namespace gl {

/// Uploads a 3D LUT from ColorIOConverter::get_gpu_shader_data: edge^3 RGB floats, red fastest, into an
/// RGB32F 3D texture, linearly filtered, clamped to its edge. Throws diagnostics::Failure (GPU_LIMIT) when
/// the driver does not support it.
void upload_lut(const GlTexture& texture, const float* lut, int edge);

/// Makes an unfiltered 2D texture of RGBA32F from `rgba` (rows from bottom to top; null leaves it
/// uninitialized). Throws diagnostics::Failure (GPU_LIMIT) when the driver does not support the size.
void upload_pixels(const GlTexture& texture, const float* rgba, int width, int height);

} // namespace gl
