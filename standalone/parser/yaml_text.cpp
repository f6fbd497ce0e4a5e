#include "standalone/parser/yaml_text.h"

#include <yaml-cpp/binary.h>

#include <algorithm>
#include <array>
#include <cstdio>

namespace {

constexpr char32_t INVALID = 0xFFFFFFFF;

// A name before ':' on its line has at most 1024 characters (YAML 1.2, section 7.4); this leaves room for a
// tag.
constexpr size_t MAX_IMPLICIT_NAME = 1000;

struct Utf8Form {
    unsigned char mask; // bits of the first byte that encode the length
    unsigned char mark; // their value
    size_t length;
    char32_t smallest; // code points below it have a shorter form
};

// RFC 3629, section 3.
constexpr std::array<Utf8Form, 4> UTF8_FORMS{
    {{0x80, 0x00, 1, 0}, {0xE0, 0xC0, 2, 0x80}, {0xF0, 0xE0, 3, 0x800}, {0xF8, 0xF0, 4, 0x10000}}};

// Removes the code point at the start of `text`, which is not empty; INVALID when there is none.
char32_t take_code_point(std::string_view& text) {
    const auto first = static_cast<unsigned char>(text[0]);
    const auto form = std::find_if(UTF8_FORMS.begin(), UTF8_FORMS.end(),
                                   [&](const Utf8Form& form) { return (first & form.mask) == form.mark; });
    if (form == UTF8_FORMS.end() || text.size() < form->length)
        return INVALID;
    char32_t code_point = first & static_cast<unsigned char>(~form->mask);
    for (size_t i = 1; i < form->length; ++i) {
        const auto next = static_cast<unsigned char>(text[i]);
        if ((next & 0xC0) != 0x80)
            return INVALID;
        code_point = code_point << 6 | (next & 0x3F);
    }
    text.remove_prefix(form->length);
    const bool is_surrogate = code_point >= 0xD800 && code_point < 0xE000;
    return code_point < form->smallest || code_point > 0x10FFFF || is_surrogate ? INVALID : code_point;
}

// Characters outside the printable set of YAML (section 5.1), line breaks of any standard, and the byte order
// mark.
bool needs_escape(char32_t code_point) {
    return code_point < 0x20 || (code_point >= 0x7F && code_point < 0xA0) || code_point == 0x2028 ||
           code_point == 0x2029 || code_point == 0xFEFF || (code_point & 0xFFFE) == 0xFFFE;
}

std::string escape(char32_t code_point) {
    switch (code_point) {
    case '\n':
        return "\\n";
    case '\t':
        return "\\t";
    case '\r':
        return "\\r";
    default:
        break;
    }
    char text[16];
    std::snprintf(text, sizeof text,
                  code_point < 0x100     ? "\\x%02X"
                  : code_point < 0x10000 ? "\\u%04X"
                                         : "\\U%08X",
                  static_cast<unsigned int>(code_point));
    return text;
}

std::string to_binary(std::string_view bytes) {
    return "!!binary \"" +
           YAML::EncodeBase64(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size()) + "\"";
}

bool is_word_start(char character) {
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
           character == '_';
}

bool is_word_character(char character) {
    return is_word_start(character) || (character >= '0' && character <= '9') || character == '-';
}

// Words that some YAML version reads as null or a truth value when they are not quoted (yaml.org/type/bool).
bool is_reserved_word(std::string name) {
    constexpr std::array<std::string_view, 9> WORDS{"null", "true", "false", "yes", "no",
                                                    "on",   "off",  "y",     "n"};
    std::transform(name.begin(), name.end(), name.begin(), [](char character) {
        return static_cast<char>(character >= 'A' && character <= 'Z' ? character + 0x20 : character);
    });
    return std::find(WORDS.begin(), WORDS.end(), name) != WORDS.end();
}

} // namespace

std::string quote_yaml(std::string_view text) {
    std::string quoted = "\"";
    for (std::string_view rest = text; !rest.empty();) {
        const std::string_view before = rest;
        const char32_t code_point = take_code_point(rest);
        if (code_point == INVALID)
            return to_binary(text);
        if (code_point == '"' || code_point == '\\')
            quoted += '\\';
        if (needs_escape(code_point))
            quoted += escape(code_point);
        else
            quoted.append(before.substr(0, before.size() - rest.size()));
    }
    return quoted + "\"";
}

std::string quote_yaml_name(std::string_view name, size_t indent) {
    const bool plain = !name.empty() && is_word_start(name[0]) &&
                       std::all_of(name.begin(), name.end(), is_word_character) &&
                       !is_reserved_word(std::string(name));
    const std::string quoted = plain ? std::string(name) : quote_yaml(name);
    if (quoted.size() <= MAX_IMPLICIT_NAME)
        return quoted + ":";
    return "? " + quoted + "\n" + std::string(indent, ' ') + ":";
}
