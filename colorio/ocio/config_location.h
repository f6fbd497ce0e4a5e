#pragma once

#include "diagnostics/diagnostic.h"

namespace ocio {

/// Sets the line and the column of an error of a config, the file of the error, if its subject is at one
/// place there: for CONFIG_INVALID, the first role, view or look that refers to the color space or look of
/// that name; for LOOK_UNKNOWN, the first list of looks with it; for CONFIG_CYCLE, the only color space, look
/// or other element with that name. Names compare without case.
void locate_in_config(diagnostics::Diagnostic& error);

} // namespace ocio
