#pragma once

#include <string>
#include <vector>

#include "colorio/ocio/types.h"

namespace ocio {

/// The display's own views, then its shared ones, also those that lists of active views hide.
std::vector<std::string> list_all_views(const ConstConfigRcPtr& config, const char* display);

} // namespace ocio
