#pragma once

#include <cstddef>
#include <string>

namespace image {

/// Why the image file at `path`, just written, is not whole; empty when it is. Looks for `part_count`
/// parts, levels of resolution counted, and reads the first and the last row or tile of each: what a full
/// disk cuts off is the end of the file, and formats begin at either edge. For formats whose writers pass
/// over failed writes.
std::string find_damage(const std::string& path, std::size_t part_count);

} // namespace image
