#include "image/tiff_layout.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <map>

namespace image {

namespace {

/// More directories than this are not followed.
constexpr int MAX_ENTRIES = 4096;

/// TIFF file layout: directories that are chained by their positions; each names the positions and lengths of
/// its strips or tiles. BigTIFF has wider numbers.
class TiffEnd {
public:
    TiffEnd(ByteSource& file, bool may_be_sparse) : file(file), may_be_sparse(may_be_sparse) {}

    void check() {
        big_endian = file.matches(0, "MM");
        is_big = file.get(2, 2, big_endian) == 43;
        std::uint64_t directory = is_big ? number(8, 8) : number(4, 4);
        for (int count = 0; directory != 0 && count < MAX_ENTRIES; ++count)
            directory = check_directory(directory);
    }

private:
    static constexpr std::uint64_t WIDTH = 256, HEIGHT = 257, BITS = 258, COMPRESSION = 259,
                                   PHOTOMETRIC = 262, STRIP_OFFSETS = 273, SAMPLES = 277, STRIP_BYTES = 279,
                                   TILE_OFFSETS = 324, TILE_BYTES = 325;

    /// An array of numbers of a directory entry.
    struct Array {
        std::uint64_t position = 0;
        std::uint64_t count = 0;
        unsigned int width = 0; ///< Bytes of each.
    };

    std::uint64_t number(std::uint64_t position, unsigned int width) {
        return file.get(position, width, big_endian);
    }

    using Directory = std::map<std::uint64_t, Array>; ///< By tag.

    /// Returns the position of the next directory.
    std::uint64_t check_directory(std::uint64_t position) {
        constexpr std::uint64_t OF_PIXELS[] = {WIDTH,       HEIGHT,        BITS,        COMPRESSION,
                                               PHOTOMETRIC, STRIP_OFFSETS, STRIP_BYTES, TILE_OFFSETS,
                                               TILE_BYTES,  SAMPLES};
        const unsigned int entry_bytes = is_big ? 20 : 12;
        const std::uint64_t count = number(position, is_big ? 8 : 2);
        position += is_big ? 8 : 2;
        Directory directory;
        for (std::uint64_t i = 0; i < count; ++i, position += entry_bytes) {
            const std::uint64_t tag = number(position, 2);
            const auto* const end = std::end(OF_PIXELS);
            if (!may_be_sparse || std::find(std::begin(OF_PIXELS), end, tag) != end)
                directory[tag] = get_array(position);
        }
        const bool is_tiled = directory[TILE_OFFSETS].count > 0;
        check_strips(directory, directory[is_tiled ? TILE_OFFSETS : STRIP_OFFSETS],
                     directory[is_tiled ? TILE_BYTES : STRIP_BYTES]);
        return number(position, is_big ? 8 : 4);
    }

    /// A position of 0 is that of a strip or tile that was never written, or whose directory was not written
    /// again after its pixels; readers fill it with zeros.
    void check_strips(const Directory& directory, const Array& offsets, const Array& lengths) {
        std::uint64_t bytes = 0;
        bool is_sparse = offsets.count == 0 || offsets.count != lengths.count;
        for (std::uint64_t i = 0; i < std::min(offsets.count, lengths.count); ++i) {
            const std::uint64_t position = get(offsets, i), length = get(lengths, i);
            file.require(position, length);
            is_sparse = is_sparse || position == 0 || length == 0;
            bytes += length;
        }
        if (is_sparse ? !may_be_sparse : static_cast<double>(bytes) < count_bytes(directory))
            throw EndReached();
    }

    /// What the pixels need at least; 0 where they may be compressed or subsampled.
    double count_bytes(const Directory& directory) {
        constexpr std::uint64_t UNCOMPRESSED = 1, YCBCR = 6;
        if (get(directory, COMPRESSION) > UNCOMPRESSED || get(directory, PHOTOMETRIC) == YCBCR)
            return 0;
        double bits = 1;
        for (const std::uint64_t tag : {WIDTH, HEIGHT, BITS, SAMPLES})
            bits *= static_cast<double>(get(directory, tag));
        return bits / 8;
    }

    /// The first number of a tag; 0 when it is missing.
    std::uint64_t get(const Directory& directory, std::uint64_t tag) {
        const auto found = directory.find(tag);
        return found == directory.end() || found->second.count == 0 ? 0 : get(found->second, 0);
    }

    std::uint64_t get(const Array& array, std::uint64_t index) {
        return number(array.position + index * array.width, array.width);
    }

    Array get_array(std::uint64_t entry) {
        constexpr unsigned int WIDTHS[] = {0, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8, 4, 0, 0, 8, 8, 8};
        const std::uint64_t type = number(entry + 2, 2);
        Array array;
        array.width = type < std::size(WIDTHS) ? WIDTHS[type] : 0;
        array.count = number(entry + 4, is_big ? 8 : 4);
        const std::uint64_t room = is_big ? 8 : 4;
        array.position = entry + 4 + room;
        if (array.width == 0)
            return {}; // of a type that is not known here
        if (array.count > file.size())
            throw EndReached();
        if (array.count * array.width > room)
            array.position = number(array.position, static_cast<unsigned int>(room));
        file.require(array.position, array.count * array.width);
        return array;
    }

    ByteSource& file;
    const bool may_be_sparse;
    bool big_endian = false;
    bool is_big = false;
};

} // namespace

void check_tiff_end(ByteSource& file, bool may_be_sparse) {
    TiffEnd(file, may_be_sparse).check();
}

} // namespace image
