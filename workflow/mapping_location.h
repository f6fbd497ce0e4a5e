#pragma once

#include "diagnostics/diagnostic.h"

namespace workflow {

/// Adds line and column to an error of a mapping file: of its syntax, whose message then says what is wrong
/// there, of an entry without a value, or of a color space that does not exist. Other diagnostics, and those
/// whose cause is not found in the file, are unchanged.
void locate_in_mapping(diagnostics::Diagnostic& diagnostic);

} // namespace workflow
