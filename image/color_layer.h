#pragma once

#include <string>
#include <vector>

#include <OpenImageIO/imageio.h>

namespace image {

/// The color channels of one layer of an image, or of the channels without a layer.
struct ColorLayer {
    static constexpr int NONE = -1; ///< No such channel.

    std::string name; ///< "left" for "left.R"; empty for channels without a layer.
    int channels[4];  ///< Positions of red, green, blue, alpha. Alpha may be NONE; gray is three times the
                      ///< same.

    bool is_gray() const { return channels[0] == channels[1]; }
    bool has_alpha() const { return channels[3] != NONE; }
    bool contains(int channel) const;
};

/// Finds the color channels of an image by their names: R, G, B and A without a layer, else those of the
/// first layer that has them, else Y; then those of each view of the attribute "multiView". All other
/// channels are data.
std::vector<ColorLayer> find_color_layers(const OIIO::ImageSpec& spec);

} // namespace image
