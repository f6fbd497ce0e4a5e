#include "viewer/image.h"

#include <new>

#include <OpenImageIO/parallel.h>
#include <OpenImageIO/sysutil.h>
#include <fmt/format.h>

#include "diagnostics/failure.h"
#include "image/image_layers.h"
#include "image/image_reader.h"
#include "image/pixel_codec.h"
#include "image/pixel_layout.h"
#include "image/reader_process.h"

namespace viewer {

namespace {

/// The channels to show: those found by their names, else the first ones.
image::ColorLayer choose_color(const OIIO::ImageSpec& spec, const std::string& format) {
    const std::vector<image::ImageLayer> layers = image::find_layers(spec, {format, {}});
    for (const bool is_color : {true, false}) // data in color channels is shown if the image has no color
        for (const image::ImageLayer& layer : layers)
            if (layer.is_color() == is_color && layer.color && layer.color->has_all_colors())
                return *layer.color;
    if (spec.nchannels >= 3)
        return {"", {0, 1, 2, image::ColorLayer::NONE}};
    return {"", {0, 0, 0, image::ColorLayer::NONE}};
}

std::string name_channels(const OIIO::ImageSpec& spec, const image::ColorLayer& color) {
    std::string names;
    for (int i = 0; i < image::WORKING_CHANNELS; ++i)
        if (color.channels[i] != image::ColorLayer::NONE && (i == 0 || i == 3 || !color.is_gray()))
            names += fmt::format("{}{}", names.empty() ? "" : ", ",
                                 std::string(spec.channel_name(color.channels[i])));
    return names;
}

/// One row of one component, from the file's layout to every fourth float.
void decode_row(const std::byte* row, const image::PixelLayout& layout, int channel, int width,
                float* target) {
    std::vector<float> values(static_cast<std::size_t>(width) * image::WORKING_CHANNELS);
    const auto position = static_cast<std::size_t>(channel);
    image::decode_channels(layout.types[position], row + layout.offsets[position], layout.pixel_bytes, 1,
                           static_cast<std::size_t>(width), values.data());
    for (std::size_t i = 0; i < values.size(); i += image::WORKING_CHANNELS)
        target[i] = values[i];
}

[[noreturn]] void fail(const std::string& path, const std::string& reason) {
    diagnostics::fail_file(diagnostics::Code::IMAGE_UNREADABLE,
                           fmt::format("cannot show '{}': {}", path, reason), path);
}

/// An image that is too large to show is not read.
void check_size(const std::string& path, const OIIO::ImageSpec& spec, int max_side) {
    if (spec.deep)
        fail(path, "it is a deep image; flatten it first");
    check_side(path, spec.width, spec.height, max_side);
    const double shown_bytes =
        static_cast<double>(spec.width) * spec.height * image::WORKING_CHANNELS * sizeof(float);
    const double bytes = shown_bytes + static_cast<double>(spec.image_bytes(true));
    if (bytes > static_cast<double>(OIIO::Sysutil::physical_memory()))
        fail(path, fmt::format("{} x {} pixels need {:.0f} GB to show, more than the memory of this machine",
                               spec.width, spec.height, bytes / 1e9));
}

} // namespace

void check_side(const std::string& path, int width, int height, int max_side) {
    if (width <= max_side && height <= max_side)
        return;
    diagnostics::fail_file(
        diagnostics::Code::GPU_LIMIT,
        fmt::format("cannot show '{}': {} x {} pixels exceed the limit of the OpenGL driver ({} per side)",
                    path, width, height, max_side),
        path);
}

Image load_image(const std::string& path, int max_side) {
    image::ReaderProcess process;
    image::ImageReader reader(path, process);
    const OIIO::ImageSpec& spec = reader.get_parts().front().spec;
    check_size(path, spec, max_side);
    const image::ColorLayer color = choose_color(spec, reader.get_format());
    const image::PixelLayout layout(spec);
    image::PixelBuffer pixels;
    reader.read_part(0, pixels);

    Image image;
    image.path = path;
    image.width = spec.width;
    image.height = spec.height;
    image.channels = name_channels(spec, color);
    image.tags = image::find_color_tags(spec);
    const auto width = static_cast<std::size_t>(spec.width);
    try {
        image.rgba.assign(width * static_cast<std::size_t>(spec.height) * image::WORKING_CHANNELS, 1.0f);
    } catch (const std::bad_alloc&) {
        fail(path, "not enough memory for its pixels");
    }
    OIIO::parallel_for(int64_t(0), int64_t(spec.height), [&](int64_t y) {
        const auto row = static_cast<std::size_t>(y);
        for (int i = 0; i < image::WORKING_CHANNELS; ++i)
            if (color.channels[i] != image::ColorLayer::NONE)
                decode_row(pixels.data() + row * width * layout.pixel_bytes, layout, color.channels[i],
                           spec.width,
                           &image.rgba[row * width * image::WORKING_CHANNELS + static_cast<size_t>(i)]);
    });
    return image;
}

} // namespace viewer
