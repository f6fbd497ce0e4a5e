#include "image/truncation.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

#include "files/input_file.h"
#include "image/byte_source.h"
#include "image/dpx_layout.h"
#include "image/exr_layout.h"
#include "image/tiff_layout.h"

namespace image {

namespace {

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

void require_end(ByteSource& file, std::string_view bytes) {
    if (file.size() < bytes.size() || !file.matches(file.size() - bytes.size(), bytes))
        throw EndReached();
}

void check_end(ByteSource& file, const std::string& format) {
    constexpr std::string_view PNG_END("\0\0\0\0IEND\xae\x42\x60\x82", 12);
    constexpr std::string_view JPEG_END("\xff\xd9", 2);
    if (format == "openexr")
        ExrEnd(file).check();
    else if (format == "tiff")
        check_tiff_end(file, false);
    else if (format == "png")
        require_end(file, PNG_END);
    else if (format == "jpeg")
        require_end(file, JPEG_END);
    else if (format == "dpx")
        check_dpx_end(file);
}

void check_pixels(ByteSource& file, const std::string& format) {
    if (format == "tiff")
        check_tiff_end(file, true);
    else if (format == "dpx")
        check_dpx_pixels(file);
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
