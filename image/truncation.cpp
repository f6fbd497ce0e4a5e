#include "image/truncation.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <map>
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
    /// `may_be_sparse`: strips without a position, and arrays that are not of strips, are not looked at.
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

/// The pixels of a DPX file (SMPTE ST 268): each of its elements has a position, and samples of the same
/// number of bits. Packing and ends of lines only add to that.
class DpxPixels {
public:
    explicit DpxPixels(ByteSource& file) : file(file), big_endian(file.matches(0, "SDPX")) {}

    void check() {
        const std::uint64_t pixels = number(772, 4) * number(776, 4);
        const std::uint64_t elements = std::min<std::uint64_t>(number(770, 2), MAX_ELEMENTS);
        for (std::uint64_t i = 0; i < elements; ++i)
            check_element(780 + 72 * i, pixels);
    }

private:
    static constexpr std::uint64_t MAX_ELEMENTS = 8;
    static constexpr std::uint64_t UNDEFINED = 0xFFFFFFFF;

    std::uint64_t number(std::uint64_t position, unsigned int width) {
        return file.get(position, width, big_endian);
    }

    void check_element(std::uint64_t element, std::uint64_t pixels) {
        const bool is_run_length_encoded = number(element + 26, 2) == 1;
        const std::uint64_t bits = number(element + 23, 1);
        std::uint64_t position = number(element + 28, 4);
        if (position == 0 || position == UNDEFINED)
            position = number(4, 4);
        if (is_run_length_encoded || bits > 64 || pixels > UNDEFINED)
            return;
        file.require(position, pixels * count_samples(number(element + 20, 1)) * bits / 8);
    }

    /// Samples of each pixel for a descriptor of the element; 1 where it can be fewer than channels.
    static std::uint64_t count_samples(std::uint64_t descriptor) {
        constexpr std::uint64_t RGB = 50, RGBA = 51, ABGR = 52;
        return descriptor == RGB ? 3 : descriptor == RGBA || descriptor == ABGR ? 4 : 1;
    }

    ByteSource& file;
    const bool big_endian;
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
        TiffEnd(file, false).check();
    else if (format == "png")
        require_end(file, PNG_END);
    else if (format == "jpeg")
        require_end(file, JPEG_END);
    else if (format == "dpx")
        file.require(0, file.get(DPX_FILE_SIZE, 4, file.matches(0, "SDPX")));
}

void check_pixels(ByteSource& file, const std::string& format) {
    if (format == "tiff")
        TiffEnd(file, true).check();
    else if (format == "dpx")
        DpxPixels(file).check();
}

/// True when `check` reaches the end of the file, or it cannot be opened.
bool ends_early(const std::string& path, const std::string& format,
                void (*check)(ByteSource&, const std::string&)) {
    auto opened = files::open_for_reading(path);
    if (!opened)
        return true;
    ByteSource file(*opened);
    try {
        check(file, format);
    } catch (const EndReached&) {
        return true;
    }
    return false;
}

} // namespace

bool is_truncated(const std::string& path, const std::string& format) {
    return ends_early(path, format, check_end);
}

bool lacks_pixels(const std::string& path, const std::string& format) {
    return ends_early(path, format, check_pixels);
}

} // namespace image
