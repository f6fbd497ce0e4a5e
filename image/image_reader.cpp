#include "image/image_reader.h"

#include <new>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include "image/reader_process.h"
#include "image/reader_server.h"

namespace image {

ImageReader::ImageReader(const std::string& path, ReaderProcess& process) : path(path), process(process) {
    if (reads_in_process()) {
        file = std::make_unique<ImageFile>(path);
        format = file->get_format();
        parts = file->get_parts();
        return;
    }
    ReaderProcess::OpenedImage image = process.open(path);
    format = std::move(image.format);
    parts = std::move(image.parts);
}

ImageReader::~ImageReader() = default;

unsigned int ImageReader::count_subimages() const {
    return static_cast<unsigned int>(parts.back().subimage) + 1;
}

void ImageReader::read_part(std::size_t index, PixelBuffer& pixels) {
    const OIIO::ImageSpec& spec = parts[index].spec;
    if (file == nullptr)
        return process.read_part(index, spec, pixels);
    try {
        pixels.resize(spec.image_bytes(true));
    } catch (const std::bad_alloc&) {
        fail_to_read(path, fmt::format("no memory for {} x {} pixels", spec.width, spec.height));
    }
    file->read_part(index, pixels.data());
}

void ImageReader::read_deep_part(std::size_t index, DeepPixels& pixels) {
    const OIIO::ImageSpec& spec = parts[index].spec;
    if (file == nullptr)
        return process.read_deep_part(index, spec, pixels);
    try {
        OIIO::DeepData data;
        file->read_deep_part(index, data);
        std::vector<std::byte> packed(get_packed_bytes(data));
        pack(data, packed.data());
        unpack(packed.data(), packed.size(), spec, pixels);
    } catch (const std::bad_alloc&) {
        fail_to_read(path, "no memory for its deep samples");
    }
}

} // namespace image
