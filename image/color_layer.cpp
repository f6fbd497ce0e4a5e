#include "image/color_layer.h"

#include <algorithm>

namespace image {

bool ColorLayer::contains(int channel) const {
    const int* const end = channels + (owns_alpha ? 4 : 3);
    return channel != NONE && std::find(channels, end, channel) != end;
}

} // namespace image
