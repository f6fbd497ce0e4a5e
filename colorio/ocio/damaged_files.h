#pragma once

#include <optional>
#include <string>

#include "colorio/ocio/conversion_check.h"
#include "colorio/ocio/types.h"
#include "diagnostics/diagnostic.h"

namespace ocio {

/// OpenColorIO's error for a file alone in one direction; empty if it accepts the file.
std::optional<std::string> find_refusal(const std::string& path, TransformDirection direction);

/// The first LUT or CDL file that cannot be read; empty when all can.
std::optional<diagnostics::Diagnostic> find_damaged_file(const ConstConfigRcPtr& config,
                                                         const ConversionParts& parts);

} // namespace ocio
