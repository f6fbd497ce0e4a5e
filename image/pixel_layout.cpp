#include "image/pixel_layout.h"

#include <utility>

namespace image {

PixelLayout::PixelLayout(const OIIO::ImageSpec& spec) {
    for (int channel = 0; channel < spec.nchannels; ++channel) {
        types.push_back(spec.channelformat(channel));
        offsets.push_back(pixel_bytes);
        pixel_bytes += types.back().size();
    }
}

void PixelBuffer::resize(std::size_t wanted) {
    if (shared.size() >= wanted && shared.data() != nullptr) {
        used = wanted;
        return;
    }
    shared = SharedMemory();
    if (wanted > capacity) {
        bytes.reset();
        capacity = 0;
        bytes.reset(new std::byte[wanted]); // not value-initialized: a reader fills it
        capacity = wanted;
    }
    used = wanted;
}

void PixelBuffer::share(SharedMemory memory, std::size_t wanted) {
    bytes.reset();
    capacity = 0;
    shared = std::move(memory);
    used = wanted;
}

SharedMemory PixelBuffer::release_shared() {
    if (shared.data() != nullptr)
        used = 0;
    return std::move(shared);
}

} // namespace image
