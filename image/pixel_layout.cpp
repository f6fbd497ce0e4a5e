#include "image/pixel_layout.h"

namespace tool {

PixelLayout::PixelLayout(const OIIO::ImageSpec& spec) {
    for (int channel = 0; channel < spec.nchannels; ++channel) {
        types.push_back(spec.channelformat(channel));
        offsets.push_back(pixel_bytes);
        pixel_bytes += types.back().size();
    }
}

void PixelBuffer::resize(std::size_t wanted) {
    if (wanted > capacity) {
        bytes.reset();
        capacity = 0;
        bytes.reset(new std::byte[wanted]); // not value-initialised: a reader fills it
        capacity = wanted;
    }
    used = wanted;
}

} // namespace tool
