#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

namespace workflow {

/// What an ICC profile of three colorants and three curves says about its colors.
struct IccProfile {
    std::array<std::array<double, 3>, 3> colorants{}; ///< XYZ of red, green and blue, relative to D50.
    std::vector<double> curve; ///< Of the red channel: linear values at even steps from 0 to 1.
};

/// Reads the profile by ISO 15076-1. Nothing for damaged bytes, for profiles of other kinds and for curves
/// that differ between the channels.
std::optional<IccProfile> parse_icc_profile(const std::vector<unsigned char>& bytes);

} // namespace workflow
