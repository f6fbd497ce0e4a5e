#pragma once

#include <string>
#include <vector>

#include "image/color_tags.h"

namespace workflow {

/// The color interop IDs (Color Interop Forum, 2024) of the colors that a tag describes, the likeliest first;
/// for film scans FILM_SCAN_ID. Empty for a tag that is not recognized.
std::vector<std::string> identify(const image::ColorTag& tag);

/// Whether the tag says something about the colors; false for a DPX file whose transfer is "Undefined".
bool is_informative(const image::ColorTag& tag);

} // namespace workflow
