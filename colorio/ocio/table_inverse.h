#pragma once

#include "colorio/ocio/types.h"

namespace ocio {

/// Throws OpenColorIO's exception for the inverse of a 3D LUT with a single entry along an edge, whose search
/// OpenColorIO 2 does not end; one implementation per version of OpenColorIO.
void require_invertible_tables(const library::Processor& processor);

} // namespace ocio
