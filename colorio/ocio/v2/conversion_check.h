#pragma once

#include "colorio/ocio/types.h"

namespace ocio {

/// Throws when the library could not build the conversion without overflowing its stack, its memory or a
/// buffer: the transforms that it reaches form a cycle (the message names the members), are nested or
/// repeated beyond measure, or read a file that the library's text readers cannot hold. Everything else is
/// left to the library to judge.
void check_conversion(const ConstConfigRcPtr& config, const ConstTransformRcPtr& conversion);

} // namespace ocio
