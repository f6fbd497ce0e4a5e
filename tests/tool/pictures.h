#pragma once

#include <string>
#include <vector>

#include <OpenImageIO/imageio.h>

/// A picture in memory as a test writes or reads it: one part.
struct Picture {
    OIIO::ImageSpec spec;
    std::vector<float> values; ///< Channel by channel of each pixel; integers as 0 to 1.

    /// The value of a channel by name at (x, y) of the data window.
    float get(const std::string& channel, int x = 0, int y = 0) const;
};

/// A picture of R, G and B (and A, or Y alone); missing values are 0.
Picture make_picture(int width, int height, int channels, OIIO::TypeDesc depth, std::vector<float> values);

/// Writes the parts one after the other; throws std::runtime_error.
void write_picture(const std::string& path, const std::vector<Picture>& parts);
void write_picture(const std::string& path, const Picture& picture);
/// Reads a part as the file holds it: straight alpha stays straight.
Picture read_picture(const std::string& path, int subimage = 0, int level = 0);
/// How many parts the file holds.
int count_subimages(const std::string& path);
