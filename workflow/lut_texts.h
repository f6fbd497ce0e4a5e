#pragma once

#include <string>
#include <vector>

namespace workflow {

// 3D LUTs of `edge`^3 red, green and blue floats, red fastest, as text; the numbers read back unchanged.

/// `comment` is one line.
std::string make_cube(const std::vector<float>& lut, unsigned int edge, const std::string& comment);
std::string make_spi3d(const std::vector<float>& lut, unsigned int edge);

} // namespace workflow
