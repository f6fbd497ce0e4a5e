#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include <OpenImageIO/imageio.h>

#include "image/shared_memory.h"

namespace image {

/// Memory layout of an interleaved pixel whose channels may have different types.
struct PixelLayout {
    std::vector<OIIO::TypeDesc> types;
    std::vector<std::size_t> offsets; ///< In bytes, from the start of the pixel.
    std::size_t pixel_bytes = 0;

    /// Channels in the order and with the types of `spec`, without gaps.
    explicit PixelLayout(const OIIO::ImageSpec& spec);

    bool operator==(const PixelLayout& other) const { return types == other.types; }
    bool operator!=(const PixelLayout& other) const { return !(*this == other); }
};

/// Storage for the pixels of an image. It does not release memory when it shrinks, so that a sequence of
/// equal images allocates once.
class PixelBuffer {
public:
    /// Sets the size in bytes; the contents are indeterminate afterwards. Throws std::bad_alloc.
    void resize(std::size_t wanted);
    std::size_t size() const { return used; }
    std::byte* data() { return shared.data() != nullptr ? shared.data() : bytes.get(); }
    const std::byte* data() const { return shared.data() != nullptr ? shared.data() : bytes.get(); }

    /// Takes over memory with pixels from another process, of which the first `wanted` bytes are used.
    void share(SharedMemory memory, std::size_t wanted);
    /// Releases that memory, and returns it. The buffer is empty afterwards if it had any.
    SharedMemory release_shared();

private:
    SharedMemory shared; ///< Holds the pixels when there is any.
    std::unique_ptr<std::byte[]> bytes;
    std::size_t capacity = 0;
    std::size_t used = 0;
};

} // namespace image
