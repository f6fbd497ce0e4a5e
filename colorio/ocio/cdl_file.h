#pragma once

#include <string>
#include <vector>

#include "colorio/ocio/transform.h"

namespace ocio {

/// Every correction of a file, in order. `again`: the file was read before and may have changed since.
std::vector<CDLTransformRcPtr> read_corrections(const std::string& path, bool again);

/// Clears the cache of CDL files.
void forget_cdl_files();

} // namespace ocio
