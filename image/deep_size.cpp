#include "image/deep_size.h"

#include <limits>
#include <vector>

#include "files/input_file.h"
#include "image/byte_source.h"
#include "image/exr_layout.h"

namespace image {

namespace {

/// Packed bytes of the counts and of the samples, which come before the bytes of the samples.
constexpr std::uint64_t PACKED_SIZES = 2 * sizeof(std::uint64_t);

/// More lines or tiles than this are not followed.
constexpr std::uint64_t MAX_CHUNKS = std::uint64_t{1} << 20;

/// Positions of the chunks of a part.
std::vector<std::uint64_t> read_table(ByteSource& file, const ExrLayout& layout, std::size_t part) {
    std::uint64_t position = layout.tables;
    for (std::size_t before = 0; before < part; ++before)
        position += layout.parts[before].chunk_count * sizeof(std::uint64_t);
    if (layout.parts[part].chunk_count > MAX_CHUNKS)
        throw EndReached();
    file.require(position, layout.parts[part].chunk_count * sizeof(std::uint64_t));
    std::vector<std::uint64_t> table(layout.parts[part].chunk_count);
    for (std::uint64_t& chunk : table) {
        chunk = file.get(position, sizeof(std::uint64_t));
        position += sizeof(std::uint64_t);
    }
    return table;
}

std::uint64_t sum_chunks(ByteSource& file, std::size_t index) {
    const ExrLayout layout = read_exr_layout(file);
    if (index >= layout.parts.size() || !layout.parts[index].is_deep)
        return 0;
    std::uint64_t sum = 0;
    for (const std::uint64_t chunk : read_table(file, layout, index)) {
        if (chunk < layout.tables || chunk > file.size())
            throw EndReached(); // 0 stands for a chunk that was never written
        const std::uint64_t bytes =
            file.get(layout.skip_place(chunk, layout.parts[index]) + PACKED_SIZES, sizeof(std::uint64_t));
        if (bytes > std::numeric_limits<std::uint64_t>::max() - sum)
            throw EndReached();
        sum += bytes;
    }
    return sum;
}

} // namespace

std::uint64_t get_deep_bytes(const std::string& path, std::size_t part) {
    auto opened = files::open_for_reading(path);
    if (!opened)
        return 0;
    ByteSource file(*opened);
    try {
        return sum_chunks(file, part);
    } catch (const EndReached&) {
        return 0;
    }
}

} // namespace image
