#pragma once

namespace ocio {

/// Drops what is remembered of every CDL file.
void forget_cdl_files();

} // namespace ocio
