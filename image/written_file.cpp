#include "image/written_file.h"

#include <algorithm>
#include <memory>

#include <OpenImageIO/deepdata.h>
#include <OpenImageIO/imageio.h>
#include <fmt/format.h>

#include "image/pixel_layout.h"
#include "image/truncation.h"

namespace image {

namespace {

/// Start of the last tile, of side `step`, in [begin, begin + length).
int get_last_start(int begin, int length, int step) {
    return begin + (length - 1) / step * step;
}

bool read_edge_rows(OIIO::ImageInput& input, int subimage, int level, PixelBuffer& pixels) {
    const OIIO::ImageSpec spec = input.spec();
    pixels.resize(spec.scanline_bytes(true));
    const auto read = [&](int y, int z) {
        return input.read_native_scanlines(subimage, level, y, y + 1, z, pixels.data());
    };
    return read(spec.y, spec.z) && read(spec.y + spec.height - 1, spec.z + spec.depth - 1);
}

bool read_edge_tiles(OIIO::ImageInput& input, int subimage, int level, PixelBuffer& pixels) {
    const OIIO::ImageSpec spec = input.spec();
    pixels.resize(spec.tile_bytes(true));
    return input.read_native_tile(subimage, level, spec.x, spec.y, spec.z, pixels.data()) &&
           input.read_native_tile(subimage, level, get_last_start(spec.x, spec.width, spec.tile_width),
                                  get_last_start(spec.y, spec.height, spec.tile_height),
                                  get_last_start(spec.z, spec.depth, std::max(spec.tile_depth, 1)),
                                  pixels.data());
}

bool read_edge_samples(OIIO::ImageInput& input, int subimage, int level) {
    const OIIO::ImageSpec spec = input.spec();
    OIIO::DeepData pixels;
    if (spec.tile_width > 0) {
        const int left = get_last_start(spec.x, spec.width, spec.tile_width);
        const int top = get_last_start(spec.y, spec.height, spec.tile_height);
        return input.read_native_deep_tiles(subimage, level, left, spec.x + spec.width, top,
                                            spec.y + spec.height, spec.z, spec.z + 1, 0, spec.nchannels,
                                            pixels);
    }
    const auto read = [&](int y) {
        return input.read_native_deep_scanlines(subimage, level, y, y + 1, spec.z, 0, spec.nchannels, pixels);
    };
    return read(spec.y) && read(spec.y + spec.height - 1);
}

bool read_edges(OIIO::ImageInput& input, int subimage, int level) {
    if (input.spec().deep)
        return read_edge_samples(input, subimage, level);
    PixelBuffer pixels;
    return input.spec().tile_width == 0 ? read_edge_rows(input, subimage, level, pixels)
                                        : read_edge_tiles(input, subimage, level, pixels);
}

std::string explain(const std::string& reason) {
    return fmt::format("the written file cannot be read back (is the disk full?){}{}",
                       reason.empty() ? "" : ": ", reason);
}

} // namespace

std::string find_damage(const std::string& path, std::size_t part_count) {
    const std::unique_ptr<OIIO::ImageInput> input = OIIO::ImageInput::open(path);
    if (!input)
        return explain(OIIO::geterror());
    if (is_truncated(path, input->format_name()))
        return explain("its table of positions is incomplete");
    std::size_t found = 0;
    for (int subimage = 0; found <= part_count && input->seek_subimage(subimage, 0); ++subimage)
        for (int level = 0; found <= part_count && input->seek_subimage(subimage, level); ++level, ++found)
            if (!read_edges(*input, subimage, level))
                return explain(input->geterror());
    input->geterror(); // what seeking past the last part left there
    return found == part_count
               ? ""
               : fmt::format("the written file has {} parts instead of {}", found, part_count);
}

} // namespace image
