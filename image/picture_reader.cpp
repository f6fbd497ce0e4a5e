#include "image/picture_reader.h"

#include <filesystem>
#include <new>

#include <OpenImageIO/sysutil.h>
#include <fmt/format.h>

#include "tool/exit_code.h"

namespace tool {

namespace {

/// Parts in one file; a file that claims more is damaged or a film.
constexpr int MAX_SUBIMAGES = 4096;
/// Halving the largest possible side that often gives one pixel.
constexpr int MAX_LEVELS = 32;

[[noreturn]] void fail(const std::string& path, std::string reason) {
    while (!reason.empty() && (reason.back() == '\n' || reason.back() == ' '))
        reason.pop_back();
    throw CommandError(fmt::format("cannot read '{}': {}", path, reason.empty() ? "unknown reason" : reason));
}

void check_spec(const std::string& path, const OIIO::ImageSpec& spec) {
    if (spec.deep)
        fail(path, "it is a deep image; flatten it first");
    if (spec.width < 1 || spec.height < 1 || spec.depth < 1 || spec.nchannels < 1)
        fail(path, "it holds no pixels");
    const double gigabytes = static_cast<double>(spec.image_bytes(true)) / 1e9;
    if (gigabytes * 1e9 > static_cast<double>(OIIO::Sysutil::physical_memory()))
        fail(path, fmt::format("{} x {} pixels need {:.0f} GB, more than the memory of this machine",
                               spec.width, spec.height, gigabytes));
}

} // namespace

PictureReader::PictureReader(const std::string& path) : path(path) {
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(path, error);
    if (!std::filesystem::exists(status))
        fail(path, "no such file");
    if (std::filesystem::is_directory(status))
        fail(path, "it is a folder");
    if (!std::filesystem::is_regular_file(status)) // Reading a pipe or a device might never end.
        fail(path, "it is no regular file");

    OIIO::ImageSpec hints;
    hints.attribute("oiio:UnassociatedAlpha", 1);
    input = OIIO::ImageInput::open(path, &hints);
    if (!input)
        fail(path, OIIO::geterror());
    read_headers();
}

PictureReader::~PictureReader() = default;

std::string PictureReader::get_format() const {
    return input->format_name();
}

unsigned int PictureReader::count_subimages() const {
    return static_cast<unsigned int>(parts.back().subimage) + 1;
}

void PictureReader::read_headers() {
    for (int subimage = 0; subimage < MAX_SUBIMAGES && input->seek_subimage(subimage, 0); ++subimage)
        for (int level = 0; level < MAX_LEVELS && input->seek_subimage(subimage, level); ++level) {
            check_spec(path, input->spec());
            parts.push_back({subimage, level, input->spec()});
        }
    if (parts.empty())
        fail(path, input->geterror());
    input->geterror(); // what seeking past the last part left there
}

void PictureReader::read_part(unsigned int index, PixelBuffer& pixels) {
    const PartHeader& part = parts[index];
    try {
        pixels.resize(part.spec.image_bytes(true));
    } catch (const std::bad_alloc&) {
        fail(path, fmt::format("no memory for {} x {} pixels", part.spec.width, part.spec.height));
    }
    if (!input->read_image(part.subimage, part.level, 0, part.spec.nchannels, OIIO::TypeUnknown,
                           pixels.data()))
        fail(path, input->geterror());
}

} // namespace tool
