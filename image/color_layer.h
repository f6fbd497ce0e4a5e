#pragma once

#include <string>

namespace image {

/// The color channels of one layer of an image, or of the channels without a layer.
struct ColorLayer {
    static constexpr int NONE = -1; ///< No such channel.

    std::string name; ///< "left" for "left.R"; empty for channels without a layer.
    int channels[4];  ///< Positions of red, green, blue, alpha. Alpha may be NONE, and so may some of the
                      ///< colors; gray is three times the same.
    bool owns_alpha = true; ///< Else alpha is that of another layer, which is only read.
    int alpha_part = NONE;  ///< Position of the part whose alpha it has, if it has none in its own part.

    bool is_gray() const { return channels[0] != NONE && channels[0] == channels[1]; }
    bool has_alpha() const { return channels[3] != NONE || alpha_part != NONE; }
    /// False when some of red, green and blue are missing.
    bool has_all_colors() const { return channels[0] != NONE && channels[1] != NONE && channels[2] != NONE; }
    bool contains(int channel) const;
};

} // namespace image
