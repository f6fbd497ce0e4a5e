#pragma once

#include <cstddef>
#include <string>

namespace image {

/// Why the image file at `path`, just written, is incomplete; empty if it is complete. Expects `part_count`
/// parts, counting mipmap levels, and reads the first and the last row or tile of each: a full disk cuts off
/// the end of the file, which is either of them. The tables of positions are looked at too: readers fill
/// pixels without a place with zeros. For formats whose writers ignore failed writes.
std::string find_damage(const std::string& path, std::size_t part_count);

} // namespace image
