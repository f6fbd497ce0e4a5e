#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

/// Encoding of a text. UNKNOWN means "unchanged" for settings.
enum class XmlEncoding : std::int32_t {
    UNKNOWN = 0,
    UTF_8 = 1,
    SINGLE_BYTE = 2, ///< ASCII, ISO-8859-1 and every other one-byte code page
    SHIFT_JIS = 3,
    GB2312 = 4,
    BIG5 = 5,
    GBK = 6,
};

/// Byte length of a character by its first byte. Byte 0, the end of a text, has length 0.
using XmlLengthTable = std::array<std::uint8_t, 256>;

/// The table of `encoding`; GBK and Big5 share one. UNKNOWN has that of SINGLE_BYTE.
const XmlLengthTable& get_length_table(XmlEncoding encoding);

/// Guesses from the first `length` bytes of a file. UNKNOWN below 25 bytes and for UTF-16 (while wide
/// characters are guessed, see XmlSettings). With `use_declaration` an encoding="..." within the first 200
/// bytes decides; without it, or when it is incomplete, the bytes do: UTF_8 when all continuation bytes are
/// valid, else SINGLE_BYTE.
XmlEncoding guess_encoding(const char* buffer, std::size_t length, bool use_declaration);
