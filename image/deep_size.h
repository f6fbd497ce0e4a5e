#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace image {

/// Bytes of all samples of a deep part of the OpenEXR file at `path`, at its full resolution and below, in
/// the types of the file: the sum of what its chunks say, which is read without decoding them. 0 for a file
/// that cannot be read so. Safe with any bytes.
std::uint64_t get_deep_bytes(const std::string& path, std::size_t part);

} // namespace image
