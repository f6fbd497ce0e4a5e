#pragma once

#include <string>

#include "colorio/ocio/types.h"

namespace ocio {

/// Throws, as `resolve_variables` does, for the variables of the environment section and for every text of
/// the config that OpenColorIO may resolve. Variables of the process that no text refers to are not checked.
/// The config was read from the file at `path`; it is not searched when that refers to no variable.
void require_bounded_variables(const ConstConfigRcPtr& config, const std::string& path);

} // namespace ocio
