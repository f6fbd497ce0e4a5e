#include "image/png_chunk.h"

#include <zlib.h>

namespace image {

std::uint32_t get_png_number(const char* bytes) {
    std::uint32_t number = 0;
    for (std::size_t i = 0; i < PNG_NUMBER_BYTES; ++i)
        number = number << 8 | static_cast<unsigned char>(bytes[i]);
    return number;
}

PngNumber make_png_number(std::uint32_t number) {
    PngNumber bytes;
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<char>(number >> (24 - 8 * i) & 0xff);
    return bytes;
}

PngNumber make_png_checksum(std::string_view type_and_data) {
    const auto* const bytes = reinterpret_cast<const Bytef*>(type_and_data.data());
    return make_png_number(static_cast<std::uint32_t>(crc32_z(0, bytes, type_and_data.size())));
}

} // namespace image
