#pragma once

#include "diagnostics/diagnostic.h"

namespace workflow {

/// Warnings about custom CDLs whose files do not exist: the module uses the values that are stored with them.
diagnostics::Diagnostics find_missing_cdl_files();

} // namespace workflow
