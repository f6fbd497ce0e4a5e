#include <algorithm>
#include <cstring>
#include <string_view>

#include "xml/utf16.h"
#include "xml/xml_encoding.h"
#include "xml/xml_settings.h"

namespace {

constexpr std::size_t SMALLEST_GUESSED = 25;
constexpr std::size_t DECLARATION_WINDOW = 200;

struct DeclaredName {
    std::string_view prefix; // lower case
    XmlEncoding encoding;
};

constexpr DeclaredName DECLARED_NAMES[] = {
    {"utf-8", XmlEncoding::UTF_8},        {"utf8", XmlEncoding::UTF_8},
    {"shiftjis", XmlEncoding::SHIFT_JIS}, {"shift-jis", XmlEncoding::SHIFT_JIS},
    {"sjis", XmlEncoding::SHIFT_JIS},     {"gb2312", XmlEncoding::GB2312},
    {"big5", XmlEncoding::BIG5},          {"gbk", XmlEncoding::GBK},
};

// Checks only the form of continuation bytes; a character cut off by the end of the buffer is not an error,
// and a zero byte ends the check.
bool continues_as_utf8(const char* buffer, std::size_t length) {
    const XmlLengthTable& lengths = get_length_table(XmlEncoding::UTF_8);
    std::size_t at = 0;
    while (at < length && buffer[at] != '\0') {
        const std::size_t next = at + lengths[static_cast<unsigned char>(buffer[at])];
        for (++at; at < next && at < length; ++at) {
            if ((static_cast<unsigned char>(buffer[at]) & 0xC0) != 0x80)
                return false;
        }
    }
    return true;
}

void skip_blanks(std::string_view& text) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t\n\r"), text.size()));
}

bool starts_with_ignoring_case(std::string_view text, std::string_view lower_case_prefix) {
    auto same = [](char prefix, char c) {
        return prefix == (c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c);
    };
    return text.size() >= lower_case_prefix.size() &&
           std::equal(lower_case_prefix.begin(), lower_case_prefix.end(), text.begin(), same);
}

// The value after encoding= and its quote, to the end of `text`; false when any of the three is missing.
bool find_declared_name(std::string_view text, std::string_view& value) {
    constexpr std::string_view KEYWORD = "encoding";
    const std::size_t found = text.find(KEYWORD);
    if (found == std::string_view::npos)
        return false;
    text.remove_prefix(found + KEYWORD.size());
    skip_blanks(text);
    if (text.empty() || text.front() != '=')
        return false;
    text.remove_prefix(1);
    skip_blanks(text);
    if (text.empty() || (text.front() != '"' && text.front() != '\''))
        return false;
    text.remove_prefix(1);
    skip_blanks(text);
    value = text;
    return true;
}

} // namespace

XmlEncoding guess_encoding(const char* buffer, std::size_t length, bool use_declaration) {
    if (buffer == nullptr || length < SMALLEST_GUESSED)
        return XmlEncoding::UNKNOWN;
    if (get_xml_settings().guess_wide_characters && xml::find_utf16(buffer, length).is_utf16)
        return XmlEncoding::UNKNOWN;
    if (std::memcmp(buffer, "\xEF\xBB\xBF", 3) == 0)
        return XmlEncoding::UTF_8;
    const bool valid_utf8 = continues_as_utf8(buffer, length);
    std::string_view declared;
    if (!use_declaration || !find_declared_name({buffer, std::min(length, DECLARATION_WINDOW)}, declared))
        return valid_utf8 ? XmlEncoding::UTF_8 : XmlEncoding::SINGLE_BYTE;
    for (const DeclaredName& known : DECLARED_NAMES) {
        if (!starts_with_ignoring_case(declared, known.prefix))
            continue;
        return known.encoding == XmlEncoding::UTF_8 && !valid_utf8 ? XmlEncoding::UNKNOWN : known.encoding;
    }
    return XmlEncoding::SINGLE_BYTE;
}
