#pragma once

#include <string>
#include <vector>

namespace workflow {

/// Stands for a logarithmic film scan, which has no color interop ID.
inline constexpr char FILM_SCAN_ID[] = "log_film_scan";

/// Stands for ITU-R BT.709 with the curve of its cameras, which has none either.
inline constexpr char CAMERA_REC709_ID[] = "itu709_rec709_scene";

/// Names that configs commonly give to the color space of an interop ID, the most specific first; empty for
/// an unknown ID.
std::vector<std::string> get_common_names(const std::string& interop_id);

/// The interop ID that a color space of that name commonly has: the reverse of `get_common_names`, and some
/// names of color spaces for outputs, which no file is read as. Null for an unknown name.
const char* find_common_id(const std::string& name);

} // namespace workflow
