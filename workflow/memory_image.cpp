#include "workflow/memory_image.h"

#include <algorithm>
#include <utility>

#include <fmt/format.h>

#include "diagnostics/failure.h"
#include "image/format_abilities.h"
#include "image/image_layers.h"
#include "image/image_reader.h"
#include "image/image_writer.h"
#include "image/part_conversion.h"
#include "workflow/output_depth.h"

namespace workflow {

namespace {

using diagnostics::Code;

const image::PartHeader* find_part(const image::ImageReader& reader, unsigned int part) {
    const auto found = std::find_if(reader.get_parts().begin(), reader.get_parts().end(),
                                    [&](const image::PartHeader& header) {
                                        return header.subimage == static_cast<int>(part) && header.level == 0;
                                    });
    return found == reader.get_parts().end() ? nullptr : &*found;
}

const image::PartHeader& require_part(const image::ImageReader& reader, unsigned int part) {
    const image::PartHeader* const header = find_part(reader, part);
    if (header == nullptr)
        diagnostics::fail_file(Code::LAYER_UNKNOWN,
                               fmt::format("cannot read '{}': it has no part {}, but {}", reader.get_path(),
                                           part, reader.count_subimages()),
                               reader.get_path());
    if (header->spec.deep)
        diagnostics::fail_file(Code::IMAGE_UNSUPPORTED,
                               fmt::format("cannot read '{}': its pixels are deep", reader.get_path()),
                               reader.get_path());
    return *header;
}

/// Makes floats of channels of different types.
void unify_types(MemoryImage& image) {
    if (image.spec.channelformats.empty())
        return;
    OIIO::ImageSpec unified = image.spec;
    unified.channelformats.clear();
    unified.set_format(OIIO::TypeFloat);
    image::PixelBuffer floats;
    floats.resize(unified.image_bytes());
    const image::PixelLayout layout(image.spec);
    for (int channel = 0; channel < unified.nchannels; ++channel) {
        const auto index = static_cast<std::size_t>(channel);
        OIIO::convert_image(
            1, unified.width, unified.height, unified.depth, image.pixels.data() + layout.offsets[index],
            layout.types[index], static_cast<OIIO::stride_t>(layout.pixel_bytes), OIIO::AutoStride,
            OIIO::AutoStride, floats.data() + index * sizeof(float), OIIO::TypeFloat,
            static_cast<OIIO::stride_t>(unified.pixel_bytes()), OIIO::AutoStride, OIIO::AutoStride);
    }
    image.spec = std::move(unified);
    image.pixels = std::move(floats);
}

} // namespace

unsigned int count_image_parts(const std::string& path, image::ReaderProcess& process) {
    return image::ImageReader(path, process).count_subimages();
}

MemoryImage read_image(const std::string& path, unsigned int part, image::ReaderProcess& process) {
    image::ImageReader reader(path, process);
    const image::PartHeader& header = require_part(reader, part);
    MemoryImage image{header.spec, reader.get_format(), {}};
    reader.read_part(static_cast<std::size_t>(&header - reader.get_parts().data()), image.pixels);
    unify_types(image);
    return image;
}

diagnostics::Diagnostics write_image(const MemoryImage& image, const std::string& path,
                                     image::OutputOptions options) {
    const image::FormatAbilities abilities = image::get_format_abilities(path);
    check_output_options(options, abilities.name, path);
    options.alpha_rule = image::AlphaRule::DO_NOT_DIVIDE; // nothing is converted
    // Attributes of an image that was not read from a file are meant for this one.
    const std::string& format = image.format.empty() ? abilities.name : image.format;
    image::PartPlan plan = image::plan_part(image.spec, image::find_color_layers(image.spec, {format, {}}),
                                            format, abilities, options);
    image::check_channel_count(plan.spec.nchannels, abilities, path);
    image::set_compression(options.compression, abilities.name, path, plan.spec);

    image::ImageWriter writer(path);
    const std::vector<image::PartHeader> headers = {{0, 0, plan.spec}};
    const OIIO::ImageSpec written = writer.open_part(headers, 0, abilities);
    settle_depth(options, written, abilities.name, path, plan);
    image::PixelBuffer target;
    target.resize(written.image_bytes(true));
    image::convert_part(image.spec, image.pixels, plan, written, {}, 0, target);
    writer.write_part(target);
    writer.close();

    for (diagnostics::Diagnostic& note : plan.notes)
        note.file = path;
    return std::move(plan.notes);
}

} // namespace workflow
