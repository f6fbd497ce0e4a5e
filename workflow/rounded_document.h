#pragma once

#include <string>
#include <vector>

#include "diagnostics/diagnostic.h"
#include "workflow/correction.h"

namespace workflow {

/// Writes an ASC CDL document as the host application does, with numbers rounded to one decimal: a
/// ColorCorrectionCollection, or the ColorCorrection of a single color correction. Returns a warning about
/// the largest change of a number, if there is any. Throws diagnostics::Failure, CDL_INVALID for a number
/// that the ASC CDL does not allow once it is rounded; nothing is then written.
diagnostics::Diagnostics write_rounded_document(const std::string& path,
                                                const std::vector<Correction>& corrections,
                                                bool is_collection);

} // namespace workflow
