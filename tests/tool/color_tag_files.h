#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

// Parts of image files that say what their colors are, as a test needs them.

/// An ICC profile (ISO 15076-1) of version 2 with one curve for all channels: XYZ of red, green and blue
/// relative to D50, and the exponent of the curve in 256ths; 0 for the curve of sRGB, as a table.
std::vector<std::uint8_t> make_icc_profile(const std::array<double, 9>& colorants, int gamma_256ths);

/// The colorants of sRGB profiles as the ICC publishes them.
inline constexpr std::array<double, 9> SRGB_COLORANTS = {0.43607, 0.22249, 0.01392, 0.38515, 0.71687,
                                                         0.09708, 0.14307, 0.06061, 0.71410};

/// Inserts a chunk in front of the pixels of the PNG file at `path`.
void insert_png_chunk(const std::string& path, const std::string& type, const std::string& data);
