#include "tool/image/written_file.h"

#include <algorithm>
#include <memory>

#include <OpenImageIO/imageio.h>
#include <fmt/format.h>

#include "tool/image/pixel_layout.h"

namespace tool {

namespace {

/// Reads the rows of pixels, or of tiles, that begin at `y`.
bool read_rows(OIIO::ImageInput& input, int subimage, int level, int y, PixelBuffer& pixels) {
    const OIIO::ImageSpec& spec = input.spec();
    const int height = std::max(spec.tile_height, 1);
    const int depth = std::max(spec.tile_depth, 1);
    const int end = std::min(y + height, spec.y + spec.height);
    pixels.resize(static_cast<std::size_t>(spec.width) * static_cast<std::size_t>(height) *
                  static_cast<std::size_t>(depth) * spec.pixel_bytes(true));
    if (spec.tile_width == 0)
        return input.read_native_scanlines(subimage, level, y, end, spec.z, pixels.data());
    return input.read_native_tiles(subimage, level, spec.x, spec.x + spec.width, y, end, spec.z,
                                   spec.z + std::min(depth, spec.depth), pixels.data());
}

bool read_edges(OIIO::ImageInput& input, int subimage, int level) {
    const OIIO::ImageSpec spec = input.spec();
    const int height = std::max(spec.tile_height, 1);
    const int last = spec.y + (spec.height - 1) / height * height;
    PixelBuffer pixels;
    return read_rows(input, subimage, level, spec.y, pixels) &&
           read_rows(input, subimage, level, last, pixels);
}

std::string explain(const std::string& reason) {
    return fmt::format("it cannot be read back, as on a full disk{}{}", reason.empty() ? "" : ": ", reason);
}

} // namespace

std::string find_damage(const std::string& path, std::size_t part_count) {
    const std::unique_ptr<OIIO::ImageInput> input = OIIO::ImageInput::open(path);
    if (!input)
        return explain(OIIO::geterror());
    std::size_t found = 0;
    for (int subimage = 0; found <= part_count && input->seek_subimage(subimage, 0); ++subimage)
        for (int level = 0; found <= part_count && input->seek_subimage(subimage, level); ++level, ++found)
            if (!read_edges(*input, subimage, level))
                return explain(input->geterror());
    input->geterror(); // what seeking past the last part left there
    return found == part_count ? "" : fmt::format("it holds {} parts instead of {}", found, part_count);
}

} // namespace tool
