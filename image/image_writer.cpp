#include "image/image_writer.h"

#include <algorithm>
#include <string_view>

#include <fmt/format.h>

#include "diagnostics/file_failure.h"
#include "image/format_abilities.h"
#include "image/full_disk.h"
#include "image/png_color_chunks.h"
#include "image/startable_threads.h"
#include "image/written_file.h"

namespace image {

namespace {

/// The temporary file needs a name, because the writers of some formats open files by path.
constexpr files::ReplacementRules PLACE_RULES{std::nullopt, false, true};

std::vector<OIIO::ImageSpec> get_subimage_specs(const std::vector<PartHeader>& parts) {
    std::vector<OIIO::ImageSpec> specs;
    for (const PartHeader& part : parts)
        if (part.level == 0)
            specs.push_back(part.spec);
    return specs;
}

/// Writes tiles row by row and stops at the first failure. OpenImageIO would go on, and the next row would
/// wait forever for the threads of the failed one.
bool write_tiles(OIIO::ImageOutput& output, OIIO::TypeDesc type, const std::byte* pixels) {
    const OIIO::ImageSpec& spec = output.spec();
    const bool as_the_file = type == OIIO::TypeUnknown;
    const auto pixel_bytes = static_cast<OIIO::stride_t>(
        as_the_file ? spec.pixel_bytes(true) : type.size() * static_cast<std::size_t>(spec.nchannels));
    const OIIO::stride_t row_bytes = pixel_bytes * spec.width;
    const OIIO::stride_t slice_bytes = row_bytes * spec.height;
    const int depth = std::max(1, spec.tile_depth);
    for (int z = 0; z < spec.depth; z += depth)
        for (int y = 0; y < spec.height; y += spec.tile_height)
            if (!output.write_tiles(spec.x, spec.x + spec.width, spec.y + y,
                                    spec.y + std::min(y + spec.tile_height, spec.height), spec.z + z,
                                    spec.z + std::min(z + depth, spec.depth), type,
                                    pixels + z * slice_bytes + y * row_bytes, pixel_bytes, row_bytes,
                                    slice_bytes))
                return false;
    return true;
}

/// TIFF reads its directory again to add metadata, and its writer does not read through a proxy.
bool reads_while_it_writes(const OIIO::ImageOutput& output) {
    return std::string_view(output.format_name()) == "tiff";
}

void check(const files::Replacement& place, const std::string& path) {
    if (!place.is_open())
        diagnostics::fail_file(diagnostics::Code::IMAGE_UNWRITABLE, place.get_failure()->describe(), path);
}

} // namespace

void check_output_path(const std::string& path) {
    check(files::Replacement(path), path);
}

ImageWriter::ImageWriter(const std::string& path)
    : place(path, PLACE_RULES), name(path), path(place.get_temporary_path()) {
    check(place, name);
    output = OIIO::ImageOutput::create(path);
    if (!output)
        fail(OIIO::geterror());
    if (get_thread_limit() == 1)
        output->threads(1);
}

ImageWriter::~ImageWriter() = default;

void ImageWriter::fail(std::string reason) const {
    for (std::size_t place; (place = reason.find(path)) != std::string::npos;)
        reason.replace(place, path.size(), name);
    while (!reason.empty() && reason.back() == '\n')
        reason.pop_back();
    std::replace(reason.begin(), reason.end(), '\n', ' ');
    diagnostics::fail_to_write(diagnostics::Code::IMAGE_UNWRITABLE, name, reason);
}

void ImageWriter::fail_with_format(const std::string& fallback) const {
    const std::string of_format = output->geterror();
    const std::string of_file = file ? file->get_failure() : find_full_disk(path);
    fail(!of_file.empty() ? of_file : !of_format.empty() ? of_format : fallback);
}

bool ImageWriter::open_first_part(const std::vector<PartHeader>& parts, const FormatAbilities& abilities) {
    const std::vector<OIIO::ImageSpec> specs = get_subimage_specs(parts);
    // OpenEXR, the only format that needs the specs of all parts first, opens the file without a proxy then.
    if (specs.size() > 1 && !abilities.appends_subimages)
        return output->open(path, static_cast<int>(specs.size()), specs.data());
    if (output->supports("ioproxy") && !reads_while_it_writes(*output))
        output->set_ioproxy(&file.emplace(path));
    OIIO::ImageSpec spec = parts.front().spec;
    if (abilities.name == "png" && file) // OpenImageIO 2 does not write this chunk
        file->insert(PNG_COLOR_CHUNK_OFFSET, make_png_cicp_chunk(spec));
    spec.erase_attribute("CICP");
    if (abilities.name == "png" && file && spec.get_string_attribute("compression").empty()) {
        spec.attribute("png:compressionLevel", 0);
        file->compress_png();
    }
    return output->open(path, spec, OIIO::ImageOutput::Create);
}

const OIIO::ImageSpec& ImageWriter::open_part(const std::vector<PartHeader>& parts, unsigned int index,
                                              const FormatAbilities& abilities) {
    const PartHeader& part = parts[index];
    bool opened;
    if (index == 0) {
        opened = open_first_part(parts, abilities);
    } else {
        const bool is_level = part.level > 0 && abilities.has_levels;
        opened =
            output->open(path, part.spec,
                         is_level ? OIIO::ImageOutput::AppendMIPLevel : OIIO::ImageOutput::AppendSubimage);
    }
    if (!opened)
        fail_with_format("cannot open the file");
    ++part_count;
    return output->spec();
}

void ImageWriter::write_part(const PixelBuffer& pixels) {
    // The unknown type stands for the types that each channel of the file has; it is only used where they
    // differ: not every writer supports it.
    const OIIO::ImageSpec& spec = output->spec();
    const OIIO::TypeDesc type = spec.channelformats.empty() ? spec.format : OIIO::TypeDesc(OIIO::TypeUnknown);
    write_part_as(type, pixels);
}

void ImageWriter::write_part_as(OIIO::TypeDesc type, const PixelBuffer& pixels) {
    const bool written = output->spec().tile_width > 0 ? write_tiles(*output, type, pixels.data())
                                                       : output->write_image(type, pixels.data());
    if (!written)
        fail_with_format("cannot write its pixels");
}

void ImageWriter::write_deep_part(const DeepPixels& pixels) {
    if (!output->write_deep_image(make_deep_data(pixels, output->spec())))
        fail_with_format("cannot write its pixels");
}

void ImageWriter::close() {
    if (!output->close())
        fail_with_format("cannot close the file");
    output.reset(); // with mipmap levels the writer finishes the file only now
    const std::string damage = file ? file->finish() : find_damage(path, part_count);
    if (!damage.empty()) {
        const std::string of_disk = file ? "" : find_full_disk(path);
        fail(of_disk.empty() ? damage : of_disk);
    }
    if (!place.commit())
        diagnostics::fail_file(diagnostics::Code::IMAGE_UNWRITABLE, place.get_failure()->describe(), name);
}

} // namespace image
