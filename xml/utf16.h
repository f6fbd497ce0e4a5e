#pragma once

#include <cstddef>
#include <string>

namespace xml {

/// What the first bytes of a file say about UTF-16.
struct Utf16Signature {
    bool is_utf16 = false;
    bool is_big_endian = false;
    std::size_t mark_length = 0; ///< bytes of the byte-order mark
};

/// UTF-16 is known by its byte-order mark, or by the two wide characters "<?" that open a declaration.
Utf16Signature find_utf16(const char* buffer, std::size_t length);

/// A zero-terminated text in a buffer from malloc.
struct OwnedText {
    char* buffer = nullptr;
    std::size_t length = 0;
};

/// Converts `length` bytes of UTF-16 to `charset`; the caller frees the buffer. False, and no buffer, when
/// the text is not whole UTF-16, when the charset lacks a character or is unknown, or when memory is short.
bool convert_utf16(const char* bytes, std::size_t length, bool is_big_endian, const char* charset,
                   OwnedText& converted);

/// The character set of the user's environment, or the one set below.
std::string get_system_charset();

/// Replaces the environment's character set; an empty name restores it.
void set_system_charset(const std::string& charset);

} // namespace xml
