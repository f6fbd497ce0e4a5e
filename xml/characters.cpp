#include "xml/characters.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace xml {

namespace {

struct CodeRange {
    char32_t first;
    char32_t last;
};

// NameStartChar and NameChar beyond ASCII: XML 1.0, fifth edition, productions 4 and 4a.
constexpr CodeRange NAME_START_RANGES[] = {
    {0xC0, 0xD6},     {0xD8, 0xF6},     {0xF8, 0x2FF},    {0x370, 0x37D},
    {0x37F, 0x1FFF},  {0x200C, 0x200D}, {0x2070, 0x218F}, {0x2C00, 0x2FEF},
    {0x3001, 0xD7FF}, {0xF900, 0xFDCF}, {0xFDF0, 0xFFFD}, {0x10000, 0xEFFFF},
};
constexpr CodeRange NAME_ONLY_RANGES[] = {{0xB7, 0xB7}, {0x300, 0x36F}, {0x203F, 0x2040}};

constexpr char32_t NO_CHARACTER = 0xFFFFFFFF;

template <std::size_t COUNT>
bool in_ranges(const CodeRange (&ranges)[COUNT], char32_t code) {
    return std::any_of(std::begin(ranges), std::end(ranges),
                       [code](CodeRange range) { return code >= range.first && code <= range.last; });
}

// The code of the `length` bytes at `at`, or NO_CHARACTER for an ill-formed sequence and for the codes that
// XML excludes (production 2).
char32_t decode_utf8(const char* at, std::size_t length) {
    constexpr char32_t SMALLEST[] = {0, 0, 0x80, 0x800, 0x10000};
    const auto lead = static_cast<unsigned char>(at[0]);
    if (length < 2)
        return NO_CHARACTER;
    char32_t code = lead & (0x7FU >> length);
    for (std::size_t i = 1; i < length; ++i) {
        const auto byte = static_cast<unsigned char>(at[i]);
        if ((byte & 0xC0) != 0x80)
            return NO_CHARACTER;
        code = code << 6 | (byte & 0x3F);
    }
    const bool excluded = (code >= 0xD800 && code <= 0xDFFF) || code == 0xFFFE || code == 0xFFFF;
    return code < SMALLEST[length] || code > 0x10FFFF || excluded ? NO_CHARACTER : code;
}

// The second bytes that the two-byte code pages use; a markup character is never one.
bool is_second_byte(char byte) {
    const auto value = static_cast<unsigned char>(byte);
    return value >= 0x40 || (value >= '0' && value <= '9');
}

} // namespace

const CharacterTable& CharacterTable::of(XmlEncoding encoding) {
    static const CharacterTable UTF_8(XmlEncoding::UTF_8);
    static const CharacterTable SINGLE_BYTE(XmlEncoding::SINGLE_BYTE);
    static const CharacterTable SHIFT_JIS(XmlEncoding::SHIFT_JIS);
    static const CharacterTable GB2312(XmlEncoding::GB2312);
    static const CharacterTable GBK(XmlEncoding::GBK);
    switch (encoding) {
    case XmlEncoding::UTF_8:
        return UTF_8;
    case XmlEncoding::SHIFT_JIS:
        return SHIFT_JIS;
    case XmlEncoding::GB2312:
        return GB2312;
    case XmlEncoding::BIG5:
    case XmlEncoding::GBK:
        return GBK;
    default:
        return SINGLE_BYTE;
    }
}

CharacterTable::CharacterTable(XmlEncoding table_encoding)
    : encoding(table_encoding), lengths(get_length_table(table_encoding)) {
    constexpr unsigned ALL_STOPS = TEXT_STOP | VALUE_STOP | CLEAR_STOP;
    auto add = [this](const char* characters, unsigned flags) {
        for (; *characters != '\0'; ++characters)
            flag_table[static_cast<unsigned char>(*characters)] |= static_cast<std::uint8_t>(flags);
    };
    for (unsigned byte = 0; byte < 0x20; ++byte)
        flag_table[byte] = ALL_STOPS;
    flag_table[' '] = BLANK;
    flag_table['\t'] = flag_table['\n'] = BLANK | VALUE_STOP;
    flag_table['\r'] = BLANK | ALL_STOPS;
    add("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz_:", NAME_START | NAME);
    add("0123456789-.", NAME);
    add("<&]", TEXT_STOP);
    add("<&\"'", VALUE_STOP);
    add("-]>?<", CLEAR_STOP);
    add("&<>\"'", ENTITY);
    for (unsigned byte = 0x80; byte < 0x100; ++byte) {
        const bool plain = encoding != XmlEncoding::UTF_8 && lengths[byte] == 1;
        flag_table[byte] = static_cast<std::uint8_t>(plain ? NAME_START | NAME : HIGH | ALL_STOPS);
    }
}

std::size_t CharacterTable::character_length(const char* at, const char* end) const {
    const auto lead = static_cast<unsigned char>(*at);
    const std::size_t length = lengths[lead];
    if (lead < 0x80)
        return lead >= 0x20 || is(*at, BLANK) ? 1 : 0;
    if (length > static_cast<std::size_t>(end - at))
        return 0;
    if (encoding == XmlEncoding::UTF_8)
        return decode_utf8(at, length) != NO_CHARACTER ? length : 0;
    return length == 1 || is_second_byte(at[1]) ? length : 0;
}

std::size_t CharacterTable::name_character_length(const char* at, const char* end, bool first) const {
    if (!is(*at, HIGH))
        return is(*at, first ? NAME_START : NAME) ? 1 : 0;
    const std::size_t length = character_length(at, end);
    if (length == 0 || encoding != XmlEncoding::UTF_8)
        return length;
    const char32_t code = decode_utf8(at, length);
    return in_ranges(NAME_START_RANGES, code) || (!first && in_ranges(NAME_ONLY_RANGES, code)) ? length : 0;
}

const char* CharacterTable::name_end_beyond_ascii(const char* name, const char* at, const char* end) const {
    while (const std::size_t length = name_character_length(at, end, at == name))
        at += length;
    return at;
}

} // namespace xml
