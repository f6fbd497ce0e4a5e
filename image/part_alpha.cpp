#include "image/part_alpha.h"

#include "image/image_layers.h"
#include "image/pixel_codec.h"

namespace image {

bool may_share_alpha(const OIIO::ImageSpec& a, const OIIO::ImageSpec& b) {
    return a.x == b.x && a.y == b.y && a.width == b.width && a.height == b.height && a.depth == 1 &&
           b.depth == 1 && !a.deep && !b.deep &&
           a.get_string_attribute("view") == b.get_string_attribute("view");
}

std::vector<float> decode_alpha(const OIIO::ImageSpec& spec, const PixelBuffer& pixels) {
    const PixelLayout layout(spec);
    const auto channel = static_cast<std::size_t>(find_main_alpha(spec));
    const auto width = static_cast<std::size_t>(spec.width);
    std::vector<float> alpha(spec.image_pixels());
    std::vector<float> row(width * WORKING_CHANNELS);
    for (std::size_t begin = 0; begin < alpha.size(); begin += width) {
        decode_channels(layout.types[channel],
                        pixels.data() + begin * layout.pixel_bytes + layout.offsets[channel],
                        layout.pixel_bytes, 1, width, row.data());
        for (std::size_t x = 0; x < width; ++x)
            alpha[begin + x] = row[x * WORKING_CHANNELS];
    }
    return alpha;
}

} // namespace image
