#pragma once

#include <string>
#include <vector>

#include <OpenImageIO/imageio.h>

namespace image {

/// The channels of an image that are one color: their positions among the channels.
struct ColorGroup {
    static constexpr int NONE = -1;

    std::string layer; ///< "left" for "left.R"; empty for the bare names.
    int channels[4];   ///< Red, green, blue, alpha; alpha may be NONE, a gray has one channel three times.

    bool is_gray() const { return channels[0] == channels[1]; }
    bool has_alpha() const { return channels[3] != NONE; }
    bool contains(int channel) const;
};

/// The colors of an image, told by the names of its channels: R, G, B and A without a layer, or, where
/// there are none, those of the first layer that has them; then those of each view that the attribute
/// "multiView" names; else the gray "Y". All other channels are data.
std::vector<ColorGroup> find_color_groups(const OIIO::ImageSpec& spec);

} // namespace image
