#pragma once

#include <string>
#include <vector>

#include <OpenImageIO/imageio.h>

/// An image in memory as a test writes or reads it: one part.
struct Image {
    OIIO::ImageSpec spec;
    std::vector<float> values; ///< Channel by channel of each pixel; integers as 0 to 1.

    /// The value of a channel by name at (x, y) of the data window.
    float get(const std::string& channel, int x = 0, int y = 0) const;
};

/// An image of R, G and B (and A, or Y alone); missing values are 0.
Image make_image(int width, int height, int channels, OIIO::TypeDesc depth, std::vector<float> values);

/// Writes the parts one after the other; throws std::runtime_error.
void write_image(const std::string& path, const std::vector<Image>& parts);
void write_image(const std::string& path, const Image& image);
/// Reads a part as the file holds it: straight alpha stays straight.
Image read_image(const std::string& path, int subimage = 0, int level = 0);
/// How many parts the file holds.
int count_subimages(const std::string& path);
