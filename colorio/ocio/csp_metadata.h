#pragma once

#include <istream>

namespace ocio {

/// The library looks for the end of a .csp file's metadata without noticing the end of the file, for ever.
/// True for such a file whose metadata begin and do not end. `file` is at its start.
bool has_endless_csp_metadata(std::istream& file);

} // namespace ocio
