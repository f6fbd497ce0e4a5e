#pragma once

#include <string>

#include "colorio/ocio/types.h"

namespace ocio {

/// Path of the file of a file transform: variables are replaced in `source` and in the search path, and not
/// in their values. Empty when the file does not exist.
std::string locate_file(const ConstConfigRcPtr& config, const std::string& source);

} // namespace ocio
