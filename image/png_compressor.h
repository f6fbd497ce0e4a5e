#pragma once

#include <cstddef>
#include <memory>

#include "image/png_chunk.h"

namespace image {

/// Compresses a PNG file that is written to it without compression, and passes it on. It compresses a sample
/// of every 2 MB of the pixels with two strategies of zlib: where looking for repetitions gains nothing, as
/// in photographs, renders with grain and most images of 16 bits, it only replaces runs of one byte, which
/// takes a fifth of the time. The file is as small as one made with zlib's default level and strategy, to a
/// few percent.
class PngCompressor {
public:
    /// Where the compressed file goes. Must not throw: libpng, which is C, calls `write`.
    class Sink {
    public:
        virtual ~Sink() = default;
        virtual void take(const char* bytes, std::size_t size) noexcept = 0;
    };

    /// `sink` must outlive it. Throws std::bad_alloc.
    explicit PngCompressor(Sink& sink);
    ~PngCompressor();

    /// Takes the next bytes of the uncompressed file, in pieces of any size. After a failure it does nothing.
    void write(const char* bytes, std::size_t size) noexcept;
    /// Whether memory was short, or the bytes were not those of a PNG file. To be asked when all are written.
    bool has_failed() const;

private:
    class Pixels;
    enum class State { SIGNATURE, HEADER, PIXELS, OTHERS, CHECKSUM_OF_PIXELS };

    std::size_t take_some(const char* bytes, std::size_t size);
    std::size_t collect(const char* bytes, std::size_t size);
    void start_chunk();
    void enter(State next, std::size_t length);

    Sink& sink;
    std::unique_ptr<Pixels> pixels;
    State state = State::SIGNATURE;
    std::size_t left;                   ///< Bytes until the state changes.
    char header[PNG_HEADER_BYTES] = {}; ///< Of the chunk, as far as it was read.
    bool failed = false;
};

} // namespace image
