#include "xml/references.h"

#include <algorithm>

namespace xml {

namespace {

constexpr int NO_DIGIT = -1;

char to_lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

int digit_value(char c, int base) {
    if (c >= '0' && c <= '9')
        return c - '0';
    const char lower = to_lower(c);
    return base == 16 && lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : NO_DIGIT;
}

bool matches_ignoring_case(const char* at, std::string_view lower_case) {
    for (char expected : lower_case) {
        if (to_lower(*at++) != expected)
            return false;
    }
    return true;
}

Reference read_character_reference(const char* at) {
    constexpr int LARGEST = 255;
    const char* digits = at + 2;
    const int base = to_lower(*digits) == 'x' ? 16 : 10;
    if (base == 16)
        ++digits;
    int value = 0;
    for (int digit = digit_value(*digits, base); digit != NO_DIGIT; digit = digit_value(*++digits, base)) {
        if (value <= LARGEST)
            value = value * base + digit;
    }
    if (*digits != ';')
        return {XmlError::UNKNOWN_ENTITY, 0, '\0'};
    if (value > LARGEST)
        return {XmlError::CHARACTER_CODE_ABOVE_255, 0, '\0'};
    return {XmlError::NONE, static_cast<std::size_t>(digits + 1 - at), static_cast<char>(value)};
}

} // namespace

Reference read_reference(const char* at) {
    if (at[1] == '#')
        return read_character_reference(at);
    for (const Entity& entity : ENTITIES) {
        if (matches_ignoring_case(at, entity.reference))
            return {XmlError::NONE, entity.reference.size(), entity.character};
    }
    return {XmlError::UNKNOWN_ENTITY, 0, '\0'};
}

char* decode(Document& document, const char* begin, const char* end, const DecodingRules& rules) {
    char* decoded = document.allocate_array<char>(static_cast<std::size_t>(end - begin) + 1);
    if (decoded == nullptr)
        return nullptr;
    char* out = decoded;
    for (const char* at = begin; at != end;) {
        const std::size_t length =
            std::min(rules.characters.table_length(*at), static_cast<std::size_t>(end - at));
        if (length > 1) {
            out = std::copy_n(at, length, out);
            at += length;
            continue;
        }
        char c = *at;
        if (c == '&') {
            const Reference reference = read_reference(at);
            if (reference.error == XmlError::NONE) {
                *out++ = reference.byte;
                at += reference.length;
                continue;
            }
        } else if (c == '\r') {
            if (at + 1 != end && at[1] == '\n')
                ++at;
            c = '\n';
        }
        *out++ = rules.blanks_to_spaces && (c == '\n' || c == '\t') ? ' ' : c;
        ++at;
    }
    *out = '\0';
    return decoded;
}

} // namespace xml
