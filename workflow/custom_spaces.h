#pragma once

#include <string>
#include <vector>

#include "colorio/color_io_manager.h"

namespace workflow {

// Custom color spaces: those that the user adds to the built-in config.

/// The custom color spaces of the running module. Needs an open session.
std::vector<ColorIOManager::ColorSpaceDef> get_custom_spaces();

/// False when a file of the color space is missing or has errors.
bool is_usable(const ColorIOManager::ColorSpaceDef& space);

/// Label under which the module publishes the color space: "Tavelion|film".
std::string get_label(const ColorIOManager::ColorSpaceDef& space);

/// Files of the color space, in the order of their application: "film.cube", "grades.ccc:a then film.cube".
std::string describe_origin(const ColorIOManager::ColorSpaceDef& space);
/// Allocation and its variables: "uniform 0 1" or "lg2 -8 5 0.01".
std::string describe_allocation(const ColorIOManager::ColorSpaceDef& space);
/// Bit depth as in config files: "32f"; "unknown" for a value that is not a bit depth.
std::string describe_depth(const ColorIOManager::ColorSpaceDef& space);

/// OpenColorIO's enumeration value of a bit depth ("32f") or an allocation ("lg2"). Throws
/// diagnostics::Failure for other names.
unsigned int parse_depth(const std::string& name);
unsigned int parse_allocation(const std::string& name);
/// All names that `parse_depth` accepts.
std::vector<std::string> get_depth_names();

} // namespace workflow
