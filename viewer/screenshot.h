#pragma once

#include <string>

#include "viewer/screen.h"

namespace tool {

/// Writes the bound framebuffer as an 8-bit RGB picture in the format that the path's extension names. Throws
/// CommandError.
void write_screenshot(const std::string& path, Screen::Size size);

} // namespace tool
