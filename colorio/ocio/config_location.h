#pragma once

#include "diagnostics/diagnostic.h"

namespace ocio {

/// Sets the line and the column of an error of a config, the file of the error, if its subject is at one
/// place there: for CONFIG_INVALID, the first role, view or look that refers to the color space or look of
/// that name; for LOOK_UNKNOWN, the first list of looks with it; for CONFIG_CYCLE and MATRIX_SINGULAR, the
/// only color space, look or other element with that name; for CONFIG_VARIABLE, the first text with the
/// variable of that name. Names of variables compare with case, others without.
void locate_in_config(diagnostics::Diagnostic& error);

} // namespace ocio
