#pragma once

#include <string>

#include "image/color_description.h"

namespace workflow {

class Conversion;

/// What files with the result of the conversion can say about their colors: always the name of the color
/// space, and what its interop ID implies, if it has one or its name is a common one. Needs an open
/// session.
image::ColorDescription describe_output_colors(const Conversion& conversion);

/// The interop ID of the color space with that label in the active config: the one that
/// the config gives it, else that of its name or of one of its aliases; for film scans FILM_SCAN_ID. Empty
/// when it is not known.
std::string find_interop_id(const std::string& label);

} // namespace workflow
