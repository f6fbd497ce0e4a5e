#include "image/exr_layout.h"

#include <string>
#include <string_view>

namespace image {

namespace {

constexpr std::string_view MARK = "\x76\x2f\x31\x01";
constexpr std::uint64_t FLAG_TILED = 0x200, FLAG_PARTS = 0x1000;
constexpr std::size_t MAX_PARTS = 4096;

/// Reads the attributes of a header, which `position` moves behind.
void read_header(ByteSource& file, std::uint64_t& position, ExrLayout::Part& part) {
    while (file.get(position, 1) != 0) {
        const std::string name = file.get_text(position);
        file.get_text(position); // its type
        const std::uint64_t bytes = file.get(position, 4);
        position += 4;
        file.require(position, bytes);
        if (name == "type") {
            part.is_deep = bytes >= 4 && file.matches(position, "deep");
            part.is_tiled = bytes >= 5 && (file.matches(position, "tiled") ||
                                           (bytes >= 8 && file.matches(position, "deeptile")));
        }
        if (name == "chunkCount" && bytes == 4)
            part.chunk_count = file.get(position, 4);
        position += bytes;
    }
    ++position;
}

} // namespace

ExrLayout read_exr_layout(ByteSource& file) {
    if (!file.matches(0, MARK))
        throw EndReached();
    const std::uint64_t flags = file.get(4, 4);
    ExrLayout layout;
    layout.has_parts = (flags & FLAG_PARTS) != 0;
    std::uint64_t position = 8;
    do {
        if (layout.parts.size() == MAX_PARTS)
            throw EndReached();
        layout.parts.push_back({(flags & FLAG_TILED) != 0, false, 0});
        read_header(file, position, layout.parts.back());
    } while (layout.has_parts && file.get(position, 1) != 0);
    layout.tables = position + (layout.has_parts ? 1 : 0);
    return layout;
}

} // namespace image
