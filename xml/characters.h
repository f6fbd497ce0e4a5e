#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "xml/xml_encoding.h"

namespace xml {

/// Properties of a byte, as a set of flags. The *_STOP flags mark bytes where a scan must stop and check.
enum CharacterFlag : std::uint8_t {
    BLANK = 1,       ///< space, tab, line feed, carriage return
    NAME_START = 2,  ///< ASCII that may begin a name
    NAME = 4,        ///< ASCII that may continue a name
    TEXT_STOP = 8,   ///< within a text run
    VALUE_STOP = 16, ///< within an attribute value
    CLEAR_STOP = 32, ///< within a clear section or a processing instruction
    HIGH = 64,       ///< begins a character whose length depends on the encoding
    ENTITY = 128,    ///< one of the five characters with an entity
};

/// Whether `c` can enclose an attribute value.
constexpr bool is_quote(char c) {
    return c == '"' || c == '\'';
}

/// The characters of one encoding.
class CharacterTable {
public:
    /// The table of `encoding`, made once per process. Thread-safe.
    static const CharacterTable& of(XmlEncoding encoding);

    /// Whether `byte` has one of `flags`.
    bool is(char byte, unsigned flags) const {
        return (flag_table[static_cast<unsigned char>(byte)] & flags) != 0;
    }

    /// Bytes of the character at `at` (before `end`); 0 unless a character that XML allows begins there.
    std::size_t character_length(const char* at, const char* end) const;

    /// Bytes of a character by the length table, from its first byte alone; 0 for the zero byte.
    std::size_t table_length(char first) const { return lengths[static_cast<unsigned char>(first)]; }

    /// The end of the name that begins at `at`; `at` itself when none does. The text must be zero-terminated
    /// at `end`. Names follow the fifth edition of XML 1.0; outside UTF-8 every non-ASCII character counts as
    /// a letter, because one XmlEncoding covers many code pages.
    const char* name_end(const char* at, const char* end) const {
        const char* name = at;
        if (is(*at, NAME_START)) {
            do
                ++at;
            while (is(*at, NAME));
        }
        return is(*at, HIGH) ? name_end_beyond_ascii(name, at, end) : at;
    }

    /// The first byte from `at` on that is not a blank; the text must be zero-terminated.
    const char* skip_blanks(const char* at) const {
        while (is(*at, BLANK))
            ++at;
        return at;
    }

private:
    explicit CharacterTable(XmlEncoding table_encoding);

    /// Bytes of the name character at `at`, or 0.
    std::size_t name_character_length(const char* at, const char* end, bool first) const;
    const char* name_end_beyond_ascii(const char* name, const char* at, const char* end) const;

    std::array<std::uint8_t, 256> flag_table{};
    XmlEncoding encoding;
    const XmlLengthTable& lengths;
};

} // namespace xml
