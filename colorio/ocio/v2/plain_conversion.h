#pragma once

#include "colorio/ocio/types.h"

namespace ocio {

/// True for a conversion between two color spaces of one kind (scene or display) whose transforms refer to no
/// other part of the config and to no file. There is nothing in it that `check_conversion` could find, which
/// takes longer to look than OpenColorIO takes to make such a conversion.
bool is_plain_conversion(const library::ColorSpace& source, const library::ColorSpace& destination);

} // namespace ocio
