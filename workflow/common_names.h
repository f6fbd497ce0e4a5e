#pragma once

#include <string>
#include <vector>

namespace workflow {

/// Stands for a logarithmic film scan, which has no color interop ID.
inline constexpr char FILM_SCAN_ID[] = "log_film_scan";

/// Names that configs commonly give to the color space of an interop ID, the most specific first; empty for
/// an unknown ID.
std::vector<std::string> get_common_names(const std::string& interop_id);

} // namespace workflow
