#pragma once

#include <string>
#include <vector>

#include "colorio/ocio/types.h"

/// Functions for the check of a config that differ between versions of OpenColorIO.
namespace ocio {

struct Role {
    std::string name;
    std::string color_space; ///< as the config names it
};

struct DisplayViews {
    std::string name;
    std::vector<std::string> views; ///< shared ones included
};

/// The roles whose color space OpenColorIO reports.
std::vector<Role> known_roles(const ConstConfigRcPtr& config);
/// Displays and views, including those that the active displays and active views exclude.
std::vector<DisplayViews> every_display(const ConstConfigRcPtr& config);
/// The looks of a view, as the config lists them.
std::string get_view_looks(const ConstConfigRcPtr& config, const std::string& display,
                           const std::string& view);
/// Throws when OpenColorIO's check finds an error that the rules for version 1 do not cover.
void check_by_library(const ConstConfigRcPtr& config);

} // namespace ocio
