#pragma once

#include <string>
#include <vector>

#include "workflow/cdl/correction.h"

namespace tool {

/// Replaces the file at `path` by the ASC CDL document that the colour library writes, whose numbers read
/// back as the same floats: one ColorCorrection, or a collection of all. Throws CommandError.
void write_exact_document(const std::string& path, const std::vector<Correction>& corrections,
                          bool is_collection);

} // namespace tool
