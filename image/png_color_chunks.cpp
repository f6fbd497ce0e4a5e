#include "image/png_color_chunks.h"

#include <array>
#include <cstdint>
#include <fstream>
#include <string_view>

#include <zlib.h>

namespace image {

namespace {

// Layout: Portable Network Graphics, third edition, 5.2 and 5.3.
constexpr std::string_view SIGNATURE = "\x89PNG\r\n\x1a\n";
constexpr std::size_t HEADER_BYTES = 8;
constexpr std::uint32_t CHECKSUM_BYTES = 4;
constexpr std::uint32_t MAX_CHUNK_BYTES = 0x7fffffff;
/// Files have some dozens of chunks in front of their pixels.
constexpr int MAX_CHUNKS = 4096;
constexpr int CICP_BYTES = 4;
constexpr char CICP_ATTRIBUTE[] = "CICP";

using Bytes = std::array<char, HEADER_BYTES>;

std::uint32_t get_length(const Bytes& header) {
    std::uint32_t length = 0;
    for (int i = 0; i < 4; ++i)
        length = length << 8 | static_cast<unsigned char>(header[static_cast<std::size_t>(i)]);
    return length;
}

void add_cicp(std::ifstream& file, OIIO::ImageSpec& spec) {
    std::array<char, CICP_BYTES> bytes;
    if (!file.read(bytes.data(), bytes.size()))
        return;
    int numbers[CICP_BYTES];
    for (std::size_t i = 0; i < bytes.size(); ++i)
        numbers[i] = static_cast<unsigned char>(bytes[i]);
    spec.attribute(CICP_ATTRIBUTE, OIIO::TypeDesc(OIIO::TypeDesc::INT32, CICP_BYTES), numbers);
}

std::string to_bytes(std::uint32_t value) {
    std::string bytes;
    for (int shift = 24; shift >= 0; shift -= 8)
        bytes += static_cast<char>(value >> shift & 0xff);
    return bytes;
}

std::uint32_t get_checksum(std::string_view bytes) {
    return static_cast<std::uint32_t>(crc32_z(0, reinterpret_cast<const Bytef*>(bytes.data()), bytes.size()));
}

} // namespace

std::string make_png_cicp_chunk(const OIIO::ImageSpec& spec) {
    const OIIO::ParamValue* const found =
        spec.find_attribute(CICP_ATTRIBUTE, OIIO::TypeDesc(OIIO::TypeDesc::INT32, CICP_BYTES));
    if (!found)
        return "";
    std::string chunk = "cICP";
    for (int i = 0; i < CICP_BYTES; ++i)
        chunk += static_cast<char>(static_cast<const int*>(found->data())[i]);
    return to_bytes(CICP_BYTES) + chunk + to_bytes(get_checksum(chunk));
}

void add_png_color_chunks(const std::string& path, OIIO::ImageSpec& spec) {
    std::ifstream file(path, std::ios::binary);
    Bytes header;
    if (!file.read(header.data(), header.size()) ||
        std::string_view(header.data(), header.size()) != SIGNATURE)
        return;
    for (int chunk = 0; chunk < MAX_CHUNKS && file.read(header.data(), header.size()); ++chunk) {
        const std::uint32_t length = get_length(header);
        const std::string_view type(header.data() + 4, 4);
        if (length > MAX_CHUNK_BYTES || type == "IDAT")
            return;
        const std::streamoff next = static_cast<std::streamoff>(file.tellg()) + length + CHECKSUM_BYTES;
        if (type == "sRGB")
            spec.attribute(PNG_SRGB_ATTRIBUTE, 1);
        else if (type == "cICP" && length == CICP_BYTES)
            add_cicp(file, spec);
        file.seekg(next);
    }
}

} // namespace image
