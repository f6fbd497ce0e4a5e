#include "image/image_file.h"

#include <algorithm>
#include <filesystem>

#include <OpenImageIO/sysutil.h>
#include <fmt/format.h>

#include "diagnostics/file_failure.h"
#include "image/png_color_chunks.h"
#include "image/startable_threads.h"
#include "image/truncation.h"

namespace image {

namespace {

/// Most subimages that are read of a file; files with more are damaged, or movies.
constexpr int MAX_SUBIMAGES = 4096;
/// Halving the largest possible side 32 times gives one pixel.
constexpr int MAX_LEVELS = 32;

/// Largest number of bytes of pixels per byte of a file. Deflate expands by up to 1032, run-length coding by
/// some hundreds. A black DWA image of OpenEXR is deflated after a reduction to a 32nd of its pixels, and a
/// pixel of PNG can be one bit that becomes four bytes. Other formats have no useful limit.
struct Expansion {
    const char* format;
    std::uint64_t factor;
};
constexpr Expansion EXPANSIONS[] = {
    {"openexr", 65536}, {"png", 65536},  {"dpx", 256},  {"cineon", 256},
    {"fits", 256},      {"targa", 1024}, {"sgi", 1024},
};
/// Images up to this size are not checked.
constexpr std::uint64_t SMALL_IMAGE_BYTES = 64u << 20;

void check_expansion(const std::string& path, const std::string& format, std::uint64_t pixel_bytes,
                     std::uint64_t file_bytes) {
    if (pixel_bytes <= SMALL_IMAGE_BYTES)
        return;
    for (const Expansion& entry : EXPANSIONS)
        if (format == entry.format && pixel_bytes / entry.factor > file_bytes)
            fail_to_read(path, fmt::format("its header requires {:.1f} GB of pixels, too many for a file of "
                                           "{} bytes",
                                           static_cast<double>(pixel_bytes) / 1e9, file_bytes));
}

void check_spec(const std::string& path, const OIIO::ImageSpec& spec) {
    if (spec.width < 1 || spec.height < 1 || spec.depth < 1 || spec.nchannels < 1)
        fail_to_read(path, "no pixels");
    const double gigabytes = static_cast<double>(spec.image_bytes(true)) / 1e9;
    if (gigabytes * 1e9 > static_cast<double>(OIIO::Sysutil::physical_memory()))
        fail_to_read(path, fmt::format("{} x {} pixels need {:.0f} GB, more than the memory of this machine",
                                       spec.width, spec.height, gigabytes));
}

} // namespace

void fail_to_read(const std::string& path, std::string reason) {
    while (!reason.empty() && (reason.back() == '\n' || reason.back() == ' '))
        reason.pop_back();
    std::replace(reason.begin(), reason.end(), '\n', ' ');
    diagnostics::fail_to_read(diagnostics::Code::IMAGE_UNREADABLE, path,
                              reason.empty() ? "unknown reason" : reason);
}

ImageFile::ImageFile(const std::string& path) : path(path) {
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(path, error);
    if (!std::filesystem::exists(status))
        fail_to_read(path, diagnostics::NO_SUCH_FILE);
    if (std::filesystem::is_directory(status))
        fail_to_read(path, diagnostics::IS_FOLDER);
    if (!std::filesystem::is_regular_file(status)) // Reading a pipe or a device might never end.
        fail_to_read(path, diagnostics::NOT_A_REGULAR_FILE);
    const std::uint64_t file_bytes = std::filesystem::file_size(path, error);
    if (error)
        fail_to_read(path, error.message());

    OIIO::ImageSpec hints;
    hints.attribute("oiio:UnassociatedAlpha", 1);
    input = OIIO::ImageInput::open(path, &hints);
    if (!input)
        fail_to_read(path, OIIO::geterror());
    if (get_thread_limit() == 1)
        input->threads(1);
    read_headers(file_bytes);
    if (lacks_pixels(path, get_format()))
        fail_to_read(path, "truncated file");
}

ImageFile::~ImageFile() = default;

std::string ImageFile::get_format() const {
    return input->format_name();
}

void ImageFile::read_headers(std::uint64_t file_bytes) {
    for (int subimage = 0; subimage < MAX_SUBIMAGES && input->seek_subimage(subimage, 0); ++subimage)
        for (int level = 0; level < MAX_LEVELS && input->seek_subimage(subimage, level); ++level) {
            check_spec(path, input->spec());
            check_expansion(path, get_format(), input->spec().image_bytes(true), file_bytes);
            parts.push_back({subimage, level, input->spec()});
            if (get_format() == "png")
                add_png_color_chunks(path, parts.back().spec);
        }
    if (parts.empty())
        fail_to_read(path, input->geterror());
    input->geterror(); // what seeking past the last part left there
}

void ImageFile::read_part(std::size_t index, std::byte* pixels) {
    const PartHeader& part = parts[index];
    if (part.spec.deep)
        fail_to_read(path, "it is a deep image; flatten it first");
    if (!input->read_image(part.subimage, part.level, 0, part.spec.nchannels, OIIO::TypeUnknown, pixels))
        fail_to_read(path, input->geterror());
}

void ImageFile::read_deep_part(std::size_t index, OIIO::DeepData& pixels) {
    const PartHeader& part = parts[index];
    if (!part.spec.deep)
        fail_to_read(path, "it is not a deep image");
    if (!input->read_native_deep_image(part.subimage, part.level, pixels))
        fail_to_read(path, input->geterror());
    if (pixels.pixels() != static_cast<std::int64_t>(part.spec.image_pixels()) ||
        pixels.samplesize() != part.spec.pixel_bytes(true))
        fail_to_read(path, "its deep samples do not match its header");
}

} // namespace image
