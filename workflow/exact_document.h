#pragma once

#include <string>
#include <vector>

#include "workflow/correction.h"

namespace workflow {

/// Writes an ASC CDL document whose numbers read back as the same floats: a ColorCorrectionCollection, or the
/// ColorCorrection of a single color correction. Replaces an existing file only when writing succeeds. Throws
/// diagnostics::Failure.
void write_exact_document(const std::string& path, const std::vector<Correction>& corrections,
                          bool is_collection);

} // namespace workflow
