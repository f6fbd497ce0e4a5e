#pragma once

#include <string>
#include <vector>

#include "colorio/color_io_manager.h"

namespace workflow {

/// The custom color spaces of the running module.
std::vector<ColorIOManager::ColorSpaceDef> get_custom_spaces();

/// How the module publishes a record.
std::string get_label(const ColorIOManager::ColorSpaceDef& space);

/// What the record is made of: "film.cube", "grades.ccc:a then film.cube".
std::string describe_origin(const ColorIOManager::ColorSpaceDef& space);
/// "uniform 0 1" or "lg2 -8 5 0.01".
std::string describe_allocation(const ColorIOManager::ColorSpaceDef& space);
/// "32f"; "unknown" for a number that is not a depth.
std::string describe_depth(const ColorIOManager::ColorSpaceDef& space);

/// OpenColorIO's number for a depth or an allocation by its name; throws diagnostics::Failure.
unsigned int parse_depth(const std::string& name);
unsigned int parse_allocation(const std::string& name);
std::vector<std::string> get_depth_names();

} // namespace workflow
