#pragma once

#include <string>
#include <vector>

#include "diagnostics/diagnostic.h"
#include "image/format_abilities.h"
#include "image/image_file.h"

namespace workflow {

/// Changes the headers of the parts of an output that OpenImageIO and OpenEXR cannot write to one file:
/// parts in tiles and parts in scanlines, and parts with different chromaticities. `are_data` says which
/// parts have no color. Returns notes on what changed, without a file.
diagnostics::Diagnostics reconcile_parts(std::vector<image::PartHeader>& headers,
                                         const std::vector<bool>& are_data,
                                         const image::FormatAbilities& abilities);

/// Throws diagnostics::Failure when the output cannot be written because of deep parts. The paths are for the
/// message.
void check_deep_parts(const std::vector<image::PartHeader>& headers, const image::FormatAbilities& abilities,
                      const std::string& input, const std::string& output);

} // namespace workflow
