#pragma once

#include <string>
#include <vector>

#include "colorio/ocio/types.h"

namespace ocio {

/// Throws when an image has no pixels or an invalid description. OpenColorIO refuses such images too, but
/// leaks memory.
void require_pixels(long width, long height, bool described);

/// Throws when the display has no such view, with both names, which OpenColorIO's message lacks.
void require_view(const ConstConfigRcPtr& config, const char* display, const char* view);

/// The files of a processor, as the library names them.
std::vector<std::string> list_files(const library::ProcessorMetadata& metadata);

} // namespace ocio
