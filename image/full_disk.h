#pragma once

#include <string>

namespace image {

/// The system's reason why nothing more can be written to the file at `path`: "No space left on device";
/// empty if writing works. Appends 1 MiB of zeros, which makes the file unusable. For formats whose writers
/// do not report the reason.
std::string find_full_disk(const std::string& path);

} // namespace image
