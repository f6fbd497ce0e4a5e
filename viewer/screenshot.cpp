#include "viewer/screenshot.h"

#include <algorithm>

#include <OpenImageIO/imageio.h>
#include <epoxy/gl.h>

#include "image/format_abilities.h"
#include "image/image_writer.h"

namespace viewer {

namespace {

constexpr int CHANNELS = 3;

/// OpenGL's first row is the lowest, an image's the highest.
void flip_rows(image::PixelBuffer& pixels, std::size_t row_bytes) {
    std::byte* top = pixels.data();
    std::byte* bottom = pixels.data() + pixels.size();
    for (; top + row_bytes < bottom; top += row_bytes) {
        bottom -= row_bytes;
        std::swap_ranges(top, top + row_bytes, bottom);
    }
}

} // namespace

void write_screenshot(const std::string& path, Screen::Size size) {
    const auto row_bytes = static_cast<std::size_t>(size.width) * CHANNELS;
    image::PixelBuffer pixels;
    pixels.resize(row_bytes * static_cast<std::size_t>(size.height));
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, size.width, size.height, GL_RGB, GL_UNSIGNED_BYTE, pixels.data());
    flip_rows(pixels, row_bytes);

    const image::FormatAbilities abilities = image::get_format_abilities(path);
    const OIIO::ImageSpec spec(size.width, size.height, CHANNELS, OIIO::TypeDesc::UINT8);
    image::ImageWriter writer(path);
    writer.open_part({{0, 0, spec}}, 0, abilities);
    writer.write_part_as(spec.format, pixels);
    writer.close();
}

} // namespace viewer
