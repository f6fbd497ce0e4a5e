#pragma once

#include <istream>

namespace ocio {

/// True for a .csp file whose metadata begin and do not end: OpenColorIO would search for their end forever.
/// `file` is at its start.
bool has_endless_csp_metadata(std::istream& file);

} // namespace ocio
