#include "image/png_compressor.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <new>
#include <string_view>
#include <vector>

#include <zlib.h>

namespace image {

namespace {

/// Portable Network Graphics, third edition, 5.2.
constexpr std::size_t SIGNATURE_BYTES = 8;
constexpr std::string_view PIXEL_CHUNK = "IDAT";

constexpr int LEVEL = Z_DEFAULT_COMPRESSION;
constexpr int WINDOW_BITS = 15, MEMORY_LEVEL = 8;

/// The strategy is chosen for every PART_BYTES of the pixels, by a sample of some rows of a 4K image.
constexpr std::size_t PART_BYTES = std::size_t{2} << 20, SAMPLE_BYTES = std::size_t{64} << 10;
/// Of pixels in a compressed chunk.
constexpr std::size_t CHUNK_BYTES = std::size_t{256} << 10;
/// The fast strategy may need that much more than the default one.
constexpr double TOLERANCE = 1.02;

Bytef* as_zlib(const char* bytes) {
    return reinterpret_cast<Bytef*>(const_cast<char*>(bytes)); // zlib does not write to its input
}

/// A stream that zlib compresses.
class Deflater {
public:
    explicit Deflater(int strategy) {
        if (deflateInit2(&stream, LEVEL, Z_DEFLATED, WINDOW_BITS, MEMORY_LEVEL, strategy) != Z_OK)
            throw std::bad_alloc();
    }
    ~Deflater() { deflateEnd(&stream); }
    Deflater(const Deflater&) = delete;
    Deflater& operator=(const Deflater&) = delete;

    z_stream stream = {};
};

/// Compresses samples to compare their sizes.
class Trial {
public:
    explicit Trial(int strategy) : deflater(strategy), room(deflateBound(&deflater.stream, SAMPLE_BYTES)) {}

    std::size_t measure(const char* bytes, std::size_t size) {
        z_stream& stream = deflater.stream;
        deflateReset(&stream);
        stream.next_in = as_zlib(bytes);
        stream.avail_in = static_cast<uInt>(size);
        stream.next_out = room.data();
        stream.avail_out = static_cast<uInt>(room.size());
        deflate(&stream, Z_FINISH);
        return stream.total_out;
    }

private:
    Deflater deflater;
    std::vector<Bytef> room;
};

} // namespace

/// The pixels: undoes the stored blocks, compresses them, and makes chunks of the result.
class PngCompressor::Pixels {
public:
    explicit Pixels(Sink& sink) : sink(sink), part(PART_BYTES), chunk(PNG_HEADER_BYTES + CHUNK_BYTES) {
        if (inflateInit(&stored) != Z_OK)
            throw std::bad_alloc();
        start_chunk();
    }
    ~Pixels() { inflateEnd(&stored); }
    Pixels(const Pixels&) = delete;
    Pixels& operator=(const Pixels&) = delete;

    bool is_empty() const { return stored.total_in == 0; }

    /// Takes the next bytes of the zlib stream of stored blocks. Returns whether they are such.
    bool take(const char* bytes, std::size_t size) {
        stored.next_in = as_zlib(bytes);
        stored.avail_in = static_cast<uInt>(size);
        int result = Z_OK;
        do {
            stored.next_out = as_zlib(part.data()) + part_size;
            stored.avail_out = static_cast<uInt>(part.size() - part_size);
            result = inflate(&stored, Z_NO_FLUSH);
            part_size = part.size() - stored.avail_out;
            if (part_size == part.size())
                compress_part();
        } while (result == Z_OK && (stored.avail_in > 0 || stored.avail_out == 0));
        ended = ended || result == Z_STREAM_END;
        return ended || result == Z_OK || result == Z_BUF_ERROR;
    }

    /// Returns whether the zlib stream was complete.
    bool finish() {
        compress_part();
        while (run(Z_FINISH) != Z_STREAM_END)
            continue;
        emit_chunk();
        return ended;
    }

private:
    int choose_strategy() {
        const std::size_t size = std::min(part_size, SAMPLE_BYTES);
        const char* const sample = part.data() + (part_size - size) / 2;
        const auto fast = static_cast<double>(of_runs.measure(sample, size));
        const auto thorough = static_cast<double>(of_matches.measure(sample, size));
        return fast <= TOLERANCE * thorough ? Z_RLE : Z_DEFAULT_STRATEGY;
    }

    void compress_part() {
        z_stream& stream = compressed.stream;
        stream.next_in = as_zlib(part.data());
        stream.avail_in = 0; // what is pending is written with the former strategy
        const int strategy = choose_strategy();
        while (deflateParams(&stream, LEVEL, strategy) == Z_BUF_ERROR)
            emit_chunk();
        stream.avail_in = static_cast<uInt>(part_size);
        while (stream.avail_in > 0)
            run(Z_NO_FLUSH);
        part_size = 0;
    }

    int run(int flush) {
        const int result = deflate(&compressed.stream, flush);
        if (compressed.stream.avail_out == 0)
            emit_chunk();
        return result;
    }

    void start_chunk() {
        compressed.stream.next_out = as_zlib(chunk.data()) + PNG_HEADER_BYTES;
        compressed.stream.avail_out = static_cast<uInt>(CHUNK_BYTES);
    }

    void emit_chunk() {
        const std::size_t size = CHUNK_BYTES - compressed.stream.avail_out;
        if (size == 0)
            return;
        const PngNumber length = make_png_number(static_cast<std::uint32_t>(size));
        std::copy(length.begin(), length.end(), chunk.begin());
        std::copy(PIXEL_CHUNK.begin(), PIXEL_CHUNK.end(), chunk.data() + PNG_NUMBER_BYTES);
        const PngNumber checksum =
            make_png_checksum({chunk.data() + PNG_NUMBER_BYTES, PIXEL_CHUNK.size() + size});
        sink.take(chunk.data(), PNG_HEADER_BYTES + size);
        sink.take(checksum.data(), checksum.size());
        start_chunk();
    }

    Sink& sink;
    z_stream stored = {};
    bool ended = false; ///< Whether all of `stored` was read.
    Deflater compressed{Z_DEFAULT_STRATEGY};
    Trial of_runs{Z_RLE}, of_matches{Z_DEFAULT_STRATEGY};
    std::vector<char> part; ///< Pixels to be compressed: the first `part_size` bytes.
    std::size_t part_size = 0;
    std::vector<char> chunk; ///< Its header, and the data so far.
};

PngCompressor::PngCompressor(Sink& sink)
    : sink(sink), pixels(std::make_unique<Pixels>(sink)), left(SIGNATURE_BYTES) {}

PngCompressor::~PngCompressor() = default;

bool PngCompressor::has_failed() const {
    return failed || state != State::HEADER || left != PNG_HEADER_BYTES;
}

void PngCompressor::write(const char* bytes, std::size_t size) noexcept {
    while (size > 0 && !failed) {
        const std::size_t taken = take_some(bytes, size);
        bytes += taken;
        size -= taken;
    }
}

/// Returns how many bytes it took.
std::size_t PngCompressor::take_some(const char* bytes, std::size_t size) {
    const std::size_t taken = std::min(size, left);
    if (state == State::HEADER)
        std::memcpy(header + PNG_HEADER_BYTES - left, bytes, taken);
    else if (state == State::PIXELS)
        failed = !pixels || !pixels->take(bytes, taken);
    else if (state != State::CHECKSUM_OF_PIXELS)
        sink.take(bytes, taken);
    left -= taken;
    if (left > 0)
        return taken;
    if (state == State::HEADER)
        start_chunk();
    else if (state == State::PIXELS)
        enter(State::CHECKSUM_OF_PIXELS, PNG_NUMBER_BYTES);
    else
        enter(State::HEADER, PNG_HEADER_BYTES);
    return taken;
}

void PngCompressor::start_chunk() {
    const std::size_t length = get_png_number(header);
    if (std::string_view(header + 4, 4) == PIXEL_CHUNK) {
        enter(length > 0 ? State::PIXELS : State::CHECKSUM_OF_PIXELS, length > 0 ? length : PNG_NUMBER_BYTES);
        return;
    }
    if (pixels && !pixels->is_empty()) {
        failed = !pixels->finish();
        pixels.reset();
    }
    sink.take(header, PNG_HEADER_BYTES);
    enter(State::OTHERS, length + PNG_NUMBER_BYTES);
}

void PngCompressor::enter(State next, std::size_t length) {
    state = next;
    left = length;
}

} // namespace image
