#pragma once

#include <string>

#include "colorio/ocio/types.h"
#include "colorio/ocio/variable_expansion.h"

/// Context variables: those of a config's environment section, or of the process where it has none.
/// OpenColorIO replaces them in names and paths again and again until nothing changes, without a limit.
namespace ocio {

/// `text` with the context variables in it replaced. Throws when that would not end, or would grow
/// beyond 65,536 characters; the message names the variables that refer to each other.
std::string resolve_variables(const ConstConfigRcPtr& config, const std::string& text);

} // namespace ocio
