#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include <OpenImageIO/imageio.h>

#include "image/shared_memory.h"

namespace image {

/// How the channels of one interleaved pixel lie in memory; each channel has its own type.
struct PixelLayout {
    std::vector<OIIO::TypeDesc> types;
    std::vector<std::size_t> offsets; ///< In bytes, from the start of the pixel.
    std::size_t pixel_bytes = 0;

    explicit PixelLayout(const OIIO::ImageSpec& spec);

    bool operator==(const PixelLayout& other) const { return types == other.types; }
    bool operator!=(const PixelLayout& other) const { return !(*this == other); }
};

/// Storage for the pixels of an image. It keeps what it has when less is wanted, so that a sequence of equal
/// images allocates once. Contents are indeterminate after `resize`.
class PixelBuffer {
public:
    /// Throws std::bad_alloc.
    void resize(std::size_t wanted);
    std::size_t size() const { return used; }
    std::byte* data() { return shared.data() != nullptr ? shared.data() : bytes.get(); }
    const std::byte* data() const { return shared.data() != nullptr ? shared.data() : bytes.get(); }

    /// Takes pixels from another process as the contents, in place of memory of its own.
    void share(SharedMemory memory, std::size_t wanted);
    /// Gives that memory away; afterwards the buffer is empty if it had any.
    SharedMemory release_shared();

private:
    SharedMemory shared; ///< Holds the pixels when there is any.
    std::unique_ptr<std::byte[]> bytes;
    std::size_t capacity = 0;
    std::size_t used = 0;
};

} // namespace image
