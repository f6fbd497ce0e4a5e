#pragma once

#include "workflow/setup_report.h"

namespace tool {

/// Argument by which the program with all commands prints workflow::examine_images.
inline constexpr char EXAMINE_IMAGES[] = "__examine-images";

/// The libraries that read images and OpenGL, examined in another process where this one does not load them.
/// If that fails, the problem is in the report.
workflow::SetupReport examine_image_libraries();

} // namespace tool
