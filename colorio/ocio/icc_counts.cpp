#include "colorio/ocio/icc_counts.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace ocio {

namespace {

// ICC.1:2022, 7.2 and 7.3: a header of 128 bytes, the number of tags, and 12 bytes for each.
constexpr std::uint64_t SIGNATURE_PLACE = 36;
constexpr std::string_view SIGNATURE = "acsp";
constexpr std::uint64_t COUNT_PLACE = 128;
constexpr std::uint64_t TABLE_PLACE = 132;
constexpr std::uint64_t TAG_BYTES = 12;
// 10.6: "curv", four bytes, the number of entries, and two bytes for each.
constexpr std::string_view CURVE_TYPE = "curv";
constexpr std::uint64_t CURVE_HEADER = 12;
constexpr std::uint64_t CURVE_ENTRY_BYTES = 2;

class Reader {
public:
    explicit Reader(std::istream& file) : file_(file) {
        file_.seekg(0, std::ios::end);
        const std::streamoff end = file_.tellg();
        size_ = end > 0 ? static_cast<std::uint64_t>(end) : 0;
    }

    std::uint64_t size() const { return size_; }

    bool holds(std::uint64_t place, std::string_view word) {
        const auto bytes = read(place);
        return bytes && std::string_view(bytes->data(), bytes->size()) == word;
    }

    /// The big-endian number at `place`; 0 behind the end.
    std::uint32_t number(std::uint64_t place) {
        std::uint32_t value = 0;
        if (const auto bytes = read(place))
            for (const char byte : *bytes)
                value = value << 8 | static_cast<unsigned char>(byte);
        return value;
    }

    /// Whether `count` pieces fit from `place` on.
    bool has_room(std::uint64_t place, std::uint64_t count, std::uint64_t piece) const {
        return place <= size_ && count <= (size_ - place) / piece;
    }

private:
    std::optional<std::array<char, 4>> read(std::uint64_t place) {
        std::array<char, 4> bytes;
        if (!has_room(place, 1, bytes.size()))
            return std::nullopt;
        file_.seekg(static_cast<std::streamoff>(place));
        file_.read(bytes.data(), bytes.size());
        return file_ ? std::optional(bytes) : std::nullopt;
    }

    std::istream& file_;
    std::uint64_t size_ = 0;
};

} // namespace

std::string find_icc_overclaim(std::istream& file) {
    Reader reader(file);
    if (!reader.holds(SIGNATURE_PLACE, SIGNATURE))
        return {};
    const std::uint32_t tags = reader.number(COUNT_PLACE);
    if (!reader.has_room(TABLE_PLACE, tags, TAG_BYTES))
        return "it claims " + std::to_string(tags) + " tags and is " + std::to_string(reader.size()) +
               " bytes long";
    for (std::uint64_t tag = 0; tag < tags; ++tag) {
        const std::uint64_t place = reader.number(TABLE_PLACE + tag * TAG_BYTES + 4);
        if (!reader.holds(place, CURVE_TYPE))
            continue;
        const std::uint32_t entries = reader.number(place + 8);
        if (!reader.has_room(place + CURVE_HEADER, entries, CURVE_ENTRY_BYTES))
            return "it claims a curve of " + std::to_string(entries) + " entries and is " +
                   std::to_string(reader.size()) + " bytes long";
    }
    return {};
}

} // namespace ocio
