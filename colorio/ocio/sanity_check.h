#pragma once

#include <string>
#include <vector>

#include "colorio/ocio/types.h"

/// What the check of a configuration asks each version of the library.
namespace ocio {

struct Role {
    std::string name;
    std::string color_space; ///< as the configuration names it
};

struct DisplayViews {
    std::string name;
    std::vector<std::string> views; ///< shared ones included
};

/// The roles whose color space the library tells.
std::vector<Role> known_roles(const ConstConfigRcPtr& config);
/// Displays and views, those included that lists of active ones hide.
std::vector<DisplayViews> every_display(const ConstConfigRcPtr& config);
/// The looks of a view, as the configuration lists them.
std::string get_view_looks(const ConstConfigRcPtr& config, const std::string& display,
                           const std::string& view);
/// Throws when the library's own check finds what the rules for version 1 leave open.
void check_by_library(const ConstConfigRcPtr& config);

} // namespace ocio
