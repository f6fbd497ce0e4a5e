#pragma once

#include <string>

#include "colorio/ocio/types.h"
#include "diagnostics/diagnostic.h"

namespace ocio {

/// Error about a file of a file transform that is not found: the context variable without a value in its path
/// or in the search path, or the places where it was looked for. `source` is as the config spells it.
diagnostics::Diagnostic describe_missing_file(const ConstConfigRcPtr& config, const std::string& source);

} // namespace ocio
