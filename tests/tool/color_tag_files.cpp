#include "tests/tool/color_tag_files.h"

#include <cmath>
#include <fstream>
#include <iterator>

namespace {

using Bytes = std::vector<std::uint8_t>;

void add_integer(Bytes& bytes, std::uint32_t value, int count) {
    for (int shift = 8 * (count - 1); shift >= 0; shift -= 8)
        bytes.push_back(static_cast<std::uint8_t>(value >> shift));
}

void add_text(Bytes& bytes, const char* text) {
    bytes.insert(bytes.end(), text, text + 4);
}

Bytes make_xyz(const double* xyz) {
    Bytes bytes;
    add_text(bytes, "XYZ ");
    add_integer(bytes, 0, 4);
    for (int i = 0; i < 3; ++i)
        add_integer(bytes, static_cast<std::uint32_t>(std::lround(xyz[i] * 65536)), 4);
    return bytes;
}

Bytes make_curve(int gamma_256ths) {
    Bytes bytes;
    add_text(bytes, "curv");
    add_integer(bytes, 0, 4);
    const int count = gamma_256ths > 0 ? 1 : 1024;
    add_integer(bytes, static_cast<std::uint32_t>(count), 4);
    for (int i = 0; i < count; ++i) {
        const double x = i / 1023.0;
        const double linear = x <= 0.04045 ? x / 12.92 : std::pow((x + 0.055) / 1.055, 2.4);
        add_integer(bytes,
                    gamma_256ths > 0 ? static_cast<std::uint32_t>(gamma_256ths)
                                     : static_cast<std::uint32_t>(std::lround(linear * 65535)),
                    2);
    }
    while (bytes.size() % 4 != 0)
        bytes.push_back(0);
    return bytes;
}

/// CRC-32 of the PNG specification, annex D.
std::uint32_t get_checksum(const std::string& text) {
    std::uint32_t crc = 0xffffffffu;
    for (const char c : text) {
        crc ^= static_cast<unsigned char>(c);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc & 1) != 0 ? 0xedb88320u ^ (crc >> 1) : crc >> 1;
    }
    return ~crc;
}

std::string to_text(std::uint32_t value) {
    Bytes bytes;
    add_integer(bytes, value, 4);
    return {bytes.begin(), bytes.end()};
}

} // namespace

std::vector<std::uint8_t> make_icc_profile(const std::array<double, 9>& colorants, int gamma_256ths) {
    const char* const names[] = {"rXYZ", "gXYZ", "bXYZ", "rTRC", "gTRC", "bTRC"};
    Bytes table, data;
    const std::size_t start = 128 + 4 + 6 * 12;
    add_integer(table, 6, 4);
    for (std::size_t i = 0; i < 6; ++i) {
        const Bytes tag = i < 3 ? make_xyz(&colorants[3 * i]) : make_curve(gamma_256ths);
        add_text(table, names[i]);
        add_integer(table, static_cast<std::uint32_t>(start + data.size()), 4);
        add_integer(table, static_cast<std::uint32_t>(tag.size()), 4);
        data.insert(data.end(), tag.begin(), tag.end());
    }
    Bytes profile;
    add_integer(profile, static_cast<std::uint32_t>(start + data.size()), 4);
    add_text(profile, "test");
    add_integer(profile, 0x02100000, 4);
    for (const char* word : {"mntr", "RGB ", "XYZ "})
        add_text(profile, word);
    profile.resize(36);
    add_text(profile, "acsp");
    profile.resize(68);
    for (const double white : {0.9642, 1.0, 0.8249})
        add_integer(profile, static_cast<std::uint32_t>(std::lround(white * 65536)), 4);
    profile.resize(128);
    profile.insert(profile.end(), table.begin(), table.end());
    profile.insert(profile.end(), data.begin(), data.end());
    return profile;
}

void insert_png_chunk(const std::string& path, const std::string& type, const std::string& data) {
    std::ifstream in(path, std::ios::binary);
    std::string file((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    const std::string chunk =
        to_text(static_cast<std::uint32_t>(data.size())) + type + data + to_text(get_checksum(type + data));
    file.insert(8 + 12 + 13, chunk); // behind the signature and the header chunk
    std::ofstream(path, std::ios::binary) << file;
}
