#pragma once

#include <string>
#include <vector>

#include "colorio/ocio/transform.h"

namespace ocio {

/// Every correction of a file, in order. `again` tells that the file was read before and may have changed
/// since.
std::vector<CDLTransformRcPtr> read_corrections(const std::string& path, bool again);

/// Drops what is remembered of every CDL file.
void forget_cdl_files();

} // namespace ocio
