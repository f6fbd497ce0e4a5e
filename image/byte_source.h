#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "files/descriptor.h"

namespace image {

/// Thrown where a file ends too early, or is not of its format.
struct EndReached {};

/// Reads values anywhere in a file, through a window of it. Throws EndReached beyond the end.
class ByteSource {
public:
    /// `file` must outlive this object.
    explicit ByteSource(const files::Descriptor& file);

    std::uint64_t size() const { return length; }
    /// Throws if there are not `count` bytes at `position`.
    void require(std::uint64_t position, std::uint64_t count) const {
        if (position > length || count > length - position)
            throw EndReached();
    }

    /// An unsigned number of `count` bytes.
    std::uint64_t get(std::uint64_t position, unsigned int count, bool big_endian = false);
    bool matches(std::uint64_t position, std::string_view bytes);
    /// The text up to the next zero byte, which `position` moves behind.
    std::string get_text(std::uint64_t& position);

private:
    const unsigned char* fetch(std::uint64_t position, std::uint64_t count);

    const files::Descriptor& file;
    std::uint64_t length = 0;
    std::uint64_t start = 0;
    std::vector<unsigned char> window;
};

} // namespace image
