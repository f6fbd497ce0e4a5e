#include "image/png_color_chunks.h"

#include <array>
#include <cstdint>
#include <fstream>
#include <string_view>

#include "image/png_chunk.h"

namespace image {

namespace {

// Layout: Portable Network Graphics, third edition, 5.2 and 5.3.
constexpr std::string_view SIGNATURE = "\x89PNG\r\n\x1a\n";
constexpr std::uint32_t MAX_CHUNK_BYTES = 0x7fffffff;
/// Files have some dozens of chunks in front of their pixels.
constexpr int MAX_CHUNKS = 4096;
constexpr int CICP_BYTES = 4;
constexpr char CICP_ATTRIBUTE[] = "CICP";

using Bytes = std::array<char, PNG_HEADER_BYTES>;

void add_cicp(std::ifstream& file, OIIO::ImageSpec& spec) {
    std::array<char, CICP_BYTES> bytes;
    if (!file.read(bytes.data(), bytes.size()))
        return;
    int numbers[CICP_BYTES];
    for (std::size_t i = 0; i < bytes.size(); ++i)
        numbers[i] = static_cast<unsigned char>(bytes[i]);
    spec.attribute(CICP_ATTRIBUTE, OIIO::TypeDesc(OIIO::TypeDesc::INT32, CICP_BYTES), numbers);
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
    const PngNumber length = make_png_number(CICP_BYTES), checksum = make_png_checksum(chunk);
    return std::string(length.begin(), length.end()) + chunk + std::string(checksum.begin(), checksum.end());
}

void add_png_color_chunks(const std::string& path, OIIO::ImageSpec& spec) {
    std::ifstream file(path, std::ios::binary);
    Bytes header;
    if (!file.read(header.data(), header.size()) ||
        std::string_view(header.data(), header.size()) != SIGNATURE)
        return;
    for (int chunk = 0; chunk < MAX_CHUNKS && file.read(header.data(), header.size()); ++chunk) {
        const std::uint32_t length = get_png_number(header.data());
        const std::string_view type(header.data() + 4, 4);
        if (length > MAX_CHUNK_BYTES || type == "IDAT")
            return;
        const std::streamoff next = static_cast<std::streamoff>(file.tellg()) + length + PNG_NUMBER_BYTES;
        if (type == "sRGB")
            spec.attribute(PNG_SRGB_ATTRIBUTE, 1);
        else if (type == "cICP" && length == CICP_BYTES)
            add_cicp(file, spec);
        file.seekg(next);
    }
}

} // namespace image
