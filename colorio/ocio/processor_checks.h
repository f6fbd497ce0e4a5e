#pragma once

#include "colorio/ocio/types.h"

namespace ocio {

/// Throws when an image has no pixels or is `described` badly. The library refuses such images too, and
/// loses memory as it does.
void require_pixels(long width, long height, bool described);

/// Throws when the display has no such view. The library's own message names neither.
void require_view(const ConstConfigRcPtr& config, const char* display, const char* view);

} // namespace ocio
