#pragma once

#include <string>

namespace ocio {

/// OpenColorIO's readers of text LUTs copy words of a line into small fixed buffers without looking at their
/// length. Throws when the file holds a word that would not fit, naming file and line, claims more ICC tags
/// or curve entries than it is long, has .csp metadata without an end, or is not a regular file (reading a
/// pipe or a device might never end). A file that cannot be opened passes: OpenColorIO reports why. Files are
/// checked again only after they changed on disk.
void require_readable_lut(const std::string& path);

} // namespace ocio
