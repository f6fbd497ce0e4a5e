#pragma once

#include <array>
#include <string>
#include <vector>

namespace workflow {

/// The name that interop IDs have for the primaries ("rec709") whose chromaticities, x and y of red, green,
/// blue and white, are within 0.002 of `xy`, which has 8 numbers. Null when none are.
const char* find_primaries(const std::vector<double>& xy);

/// x and y of red, green, blue and white of these primaries ("rec709"). Null for an unknown name.
const std::array<double, 8>* get_chromaticities(const std::string& primaries);

/// Likewise for the XYZ of red, green and blue in an ICC profile: adapted to D50, within 0.003.
const char* find_primaries_of_colorants(const std::array<std::array<double, 3>, 3>& colorants);

/// The name that interop IDs have for the transfer function ("srgb") nearest to `curve`, the linear values of
/// evenly spaced code values from 0 to 1, at least two. Null when all differ by 0.004 or more somewhere.
const char* find_transfer(const std::vector<double>& curve);

} // namespace workflow
