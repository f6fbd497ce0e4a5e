#pragma once

#include "colorio/color_io_converter.h"

/// Applies an enabled conversion to a pixel and to a buffer, which must agree. What OpenColorIO throws while
/// it applies is not a finding, here and below.
void use_converter(const ColorIOConverter& converter);

/// Makes its shader in both dialects, which must have the promised form. Costs far more than a pixel.
void use_shaders(const ColorIOConverter& converter);
