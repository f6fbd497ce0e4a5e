#pragma once

#include <array>
#include <string>
#include <vector>

#include "image/color_tags.h"

namespace workflow {

/// The color interop IDs (Color Interop Forum, 2024) of the colors that a tag describes, the likeliest first;
/// for film scans FILM_SCAN_ID. Empty for a tag that is not recognized.
std::vector<std::string> identify(const image::ColorTag& tag);

/// Whether the tag describes the curve of the colors, but not their primaries: a DPX file whose transfer is
/// "Linear" and whose colorimetric is "Undefined". It is not recognized then.
bool lacks_primaries(const image::ColorTag& tag);

/// An interop ID without the image state at its end: "srgb_rec709" for "srgb_rec709_display".
std::string remove_image_state(const std::string& id);

// How file formats describe colors with these IDs, given without an image state; the reverse of `identify`.

/// The chromaticities of "lin_" and known primaries; else null.
const std::array<double, 8>* get_chromaticities_of_linear(const std::string& id);

/// Primaries, transfer, matrix (that of RGB) and range (full) of ITU-T H.273; empty when it has none for
/// them.
std::vector<int> get_code_points(const std::string& id);

/// Transfer characteristic and colorimetric specification of SMPTE ST 268, in OpenImageIO's words; empty for
/// those that it has no value for.
struct DpxColors {
    const char* transfer = "";
    const char* colorimetric = "";
};
DpxColors get_dpx_colors(const std::string& id);

/// Whether the tag says something about the colors; false for a DPX file whose transfer is "Undefined".
bool is_informative(const image::ColorTag& tag);

} // namespace workflow
