#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace workflow {

/// What an ICC profile of three colorants and three curves says about its colors.
struct IccProfile {
    std::array<std::array<double, 3>, 3> colorants{}; ///< XYZ of red, green and blue, relative to D50.
    std::vector<double> curve; ///< Of the red channel: linear values at even steps from 0 to 1.
};

/// Reads the profile. Nothing for damaged bytes, for more than 16 MiB, for profiles of other kinds and for
/// curves that differ between the channels.
std::optional<IccProfile> parse_icc_profile(const std::vector<unsigned char>& bytes);

/// A profile (ISO 15076-1:2010) of red, green and blue, for the colors that interop IDs call "srgb_rec709"
/// (described as "sRGB"), "srgb_p3d65" ("Display P3"), "itu709_rec709" ("Rec.709") and "g24_rec709"
/// ("Rec.1886"); empty for others. The same bytes every time.
std::vector<unsigned char> make_icc_profile(const std::string& colors);

} // namespace workflow
