#pragma once

#include "colorio/color_io_converter.h"

/// Applies an enabled conversion to a pixel and to a buffer, which must agree, and makes its shader in both
/// dialects, which must have the promised form. What OpenColorIO throws while it applies is no finding.
void use_converter(const ColorIOConverter& converter);
