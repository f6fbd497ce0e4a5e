#include "image/truncation.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <string>
#include <string_view>

#include "files/input_file.h"
#include "image/byte_source.h"
#include "image/exr_layout.h"

namespace image {

namespace {

/// More directories than this are not followed.
constexpr int MAX_ENTRIES = 4096;

/// OpenEXR file layout: header attributes, a table of the positions of all chunks, chunks.
class ExrEnd {
public:
    explicit ExrEnd(ByteSource& file) : file(file), layout(read_exr_layout(file)) {}

    void check() { check_chunk(find_last_chunk(layout.tables)); }

private:
    /// The table ends where the first of its chunks begins. A position of 0 is that of a chunk that was never
    /// written.
    std::uint64_t find_last_chunk(std::uint64_t position) {
        std::uint64_t first = file.size();
        std::uint64_t last = 0;
        for (; position + 8 <= first; position += 8) {
            const std::uint64_t chunk = file.get(position, 8);
            if (chunk <= position)
                throw EndReached();
            first = std::min(first, chunk);
            last = std::max(last, chunk);
        }
        return last;
    }

    void check_chunk(std::uint64_t position) {
        const std::uint64_t number = layout.has_parts ? file.get(position, 4) : 0;
        if (number >= layout.parts.size())
            throw EndReached();
        const ExrLayout::Part& part = layout.parts[number];
        position = layout.skip_place(position, part);
        if (!part.is_deep)
            return file.require(position + 4, file.get(position, 4));
        const std::uint64_t counts = file.get(position, 8), samples = file.get(position + 8, 8);
        file.require(position, counts);
        file.require(position, samples);
        file.require(position + 24, counts + samples);
    }

    ByteSource& file;
    const ExrLayout layout;
};

/// TIFF file layout: directories that are chained by their positions; each names the positions and lengths of
/// its strips or tiles. BigTIFF has wider numbers.
class TiffEnd {
public:
    explicit TiffEnd(ByteSource& file) : file(file) {}

    void check() {
        big_endian = file.matches(0, "MM");
        is_big = file.get(2, 2, big_endian) == 43;
        std::uint64_t directory = is_big ? number(8, 8) : number(4, 4);
        for (int count = 0; directory != 0 && count < MAX_ENTRIES; ++count)
            directory = check_directory(directory);
    }

private:
    static constexpr std::uint64_t STRIP_OFFSETS = 273, STRIP_BYTES = 279, TILE_OFFSETS = 324,
                                   TILE_BYTES = 325;

    /// An array of numbers of a directory entry.
    struct Array {
        std::uint64_t position = 0;
        std::uint64_t count = 0;
        unsigned int width = 0; ///< Bytes of each.
    };

    std::uint64_t number(std::uint64_t position, unsigned int width) {
        return file.get(position, width, big_endian);
    }

    /// Returns the position of the next directory.
    std::uint64_t check_directory(std::uint64_t position) {
        const unsigned int entry_bytes = is_big ? 20 : 12;
        const std::uint64_t count = number(position, is_big ? 8 : 2);
        position += is_big ? 8 : 2;
        Array offsets, lengths;
        for (std::uint64_t i = 0; i < count; ++i, position += entry_bytes) {
            const std::uint64_t tag = number(position, 2);
            const Array array = get_array(position);
            if (tag == STRIP_OFFSETS || tag == TILE_OFFSETS)
                offsets = array;
            if (tag == STRIP_BYTES || tag == TILE_BYTES)
                lengths = array;
        }
        if (offsets.count == 0 || offsets.count != lengths.count)
            throw EndReached();
        for (std::uint64_t i = 0; i < offsets.count; ++i)
            check_strip(number(offsets.position + i * offsets.width, offsets.width),
                        number(lengths.position + i * lengths.width, lengths.width));
        return number(position, is_big ? 8 : 4);
    }

    /// A position of 0 is that of a strip or tile that was never written, or whose directory was not written
    /// again after its pixels; readers fill it with zeros.
    void check_strip(std::uint64_t position, std::uint64_t length) const {
        if (position == 0 || length == 0)
            throw EndReached();
        file.require(position, length);
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
    bool big_endian = false;
    bool is_big = false;
};

void require_end(ByteSource& file, std::string_view bytes) {
    if (file.size() < bytes.size() || !file.matches(file.size() - bytes.size(), bytes))
        throw EndReached();
}

void check_end(ByteSource& file, const std::string& format) {
    constexpr std::string_view PNG_END("\0\0\0\0IEND\xae\x42\x60\x82", 12);
    constexpr std::string_view JPEG_END("\xff\xd9", 2);
    constexpr std::uint64_t DPX_FILE_SIZE = 16; // of its header
    if (format == "openexr")
        ExrEnd(file).check();
    else if (format == "tiff")
        TiffEnd(file).check();
    else if (format == "png")
        require_end(file, PNG_END);
    else if (format == "jpeg")
        require_end(file, JPEG_END);
    else if (format == "dpx")
        file.require(0, file.get(DPX_FILE_SIZE, 4, file.matches(0, "SDPX")));
}

} // namespace

bool is_truncated(const std::string& path, const std::string& format) {
    auto opened = files::open_for_reading(path);
    if (!opened)
        return true;
    ByteSource file(*opened);
    try {
        check_end(file, format);
    } catch (const EndReached&) {
        return true;
    }
    return false;
}

} // namespace image
