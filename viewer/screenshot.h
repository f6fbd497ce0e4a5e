#pragma once

#include <string>

#include "viewer/screen.h"

namespace viewer {

/// Writes the bound framebuffer as an 8-bit RGB image in the format that the path's extension names. Throws
/// diagnostics::Failure.
void write_screenshot(const std::string& path, Screen::Size size);

} // namespace viewer
