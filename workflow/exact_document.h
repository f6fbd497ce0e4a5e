#pragma once

#include <string>
#include <vector>

#include "workflow/correction.h"

namespace workflow {

/// Replaces the file at `path` by the ASC CDL document that OpenColorIO writes, whose numbers read
/// back as the same floats: one ColorCorrection, or a collection of all. Throws diagnostics::Failure.
void write_exact_document(const std::string& path, const std::vector<Correction>& corrections,
                          bool is_collection);

} // namespace workflow
