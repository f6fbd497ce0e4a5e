#pragma once

#include <string>

namespace image {

/// Why nothing more can be written to the file at `path`, such as "No space left on device"; empty when more
/// can. Appends to the file, which is of no use afterwards. For formats whose writers pass over the reason.
std::string find_full_disk(const std::string& path);

} // namespace image
