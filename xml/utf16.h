#pragma once

#include <cstddef>
#include <string>

namespace xml {

/// How a file is encoded, by its first bytes.
struct Utf16Signature {
    bool is_utf16 = false;       ///< else bytes
    bool is_big_endian = false;  ///< of UTF-16
    std::size_t mark_length = 0; ///< bytes of the byte-order mark
};

/// Recognizes UTF-16 by its byte-order mark, or by the two wide characters "<?" that open a declaration.
Utf16Signature find_utf16(const char* buffer, std::size_t length);

/// A zero-terminated text in a buffer from malloc.
struct OwnedText {
    char* buffer = nullptr; ///< null without a text
    std::size_t length = 0; ///< bytes without the terminator
};

/// Converts `length` bytes of UTF-16 to `charset`; the caller frees the buffer. False, without a buffer, when
/// the text is not valid UTF-16, when the charset lacks a character or is unknown, or when memory is short.
bool convert_utf16(const char* bytes, std::size_t length, bool is_big_endian, const char* charset,
                   OwnedText& converted);

/// The character set of the user's environment, or the one set below.
std::string get_system_charset();

/// Replaces the environment's character set; an empty name restores it.
void set_system_charset(const std::string& charset);

} // namespace xml
