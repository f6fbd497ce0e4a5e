#include "xml/declaration_grammar.h"

#include <algorithm>
#include <array>

namespace xml {

namespace {

constexpr std::string_view LETTERS = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
constexpr std::string_view ENCODING_CHARACTERS =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789._-";

class Cursor {
public:
    explicit Cursor(std::string_view content) : rest(content) {}

    const char* at() const { return rest.data(); }
    bool at_end() const { return rest.empty(); }

    bool take(std::string_view expected) {
        if (rest.substr(0, expected.size()) != expected)
            return false;
        rest.remove_prefix(expected.size());
        return true;
    }
    std::string_view take_any_of(std::string_view characters) {
        const std::string_view taken = rest.substr(0, rest.find_first_not_of(characters));
        rest.remove_prefix(taken.size());
        return taken;
    }
    bool take_blanks() { return !take_any_of(" \t\r\n").empty(); }

private:
    std::string_view rest;
};

bool take_version(Cursor& cursor, std::string_view&) {
    return cursor.take("1.") && !cursor.take_any_of("0123456789").empty();
}

bool take_encoding(Cursor& cursor, std::string_view& encoding) {
    const char* begin = cursor.at();
    if (cursor.take_any_of(LETTERS).empty())
        return false;
    cursor.take_any_of(ENCODING_CHARACTERS);
    encoding = {begin, static_cast<std::size_t>(cursor.at() - begin)};
    return true;
}

bool take_standalone(Cursor& cursor, std::string_view&) {
    return cursor.take("yes") || cursor.take("no");
}

struct PseudoAttribute {
    std::string_view name;
    bool (*take_value)(Cursor&, std::string_view&);
    bool is_required;
};

constexpr std::array<PseudoAttribute, 3> PSEUDO_ATTRIBUTES = {{
    {"version", take_version, true},
    {"encoding", take_encoding, false},
    {"standalone", take_standalone, false},
}};

bool take_assignment(Cursor& cursor, const PseudoAttribute& attribute, std::string_view& encoding) {
    cursor.take_blanks();
    if (!cursor.take("="))
        return false;
    cursor.take_blanks();
    const std::string_view quote = cursor.take("\"") ? "\"" : "'";
    if (quote == "'" && !cursor.take(quote))
        return false;
    return attribute.take_value(cursor, encoding) && cursor.take(quote);
}

} // namespace

DeclarationCheck check_declaration(std::string_view content) {
    DeclarationCheck check;
    Cursor cursor(content);
    bool blanks = cursor.take_blanks();
    for (const PseudoAttribute& attribute : PSEUDO_ATTRIBUTES) {
        const bool present = blanks && cursor.take(attribute.name);
        if (present ? !take_assignment(cursor, attribute, check.encoding) : attribute.is_required) {
            check.error = cursor.at();
            return check;
        }
        if (present)
            blanks = cursor.take_blanks();
    }
    if (!cursor.at_end())
        check.error = cursor.at();
    return check;
}

bool is_wide_encoding(std::string_view name) {
    constexpr std::array<std::string_view, 5> PREFIXES = {"UTF-16", "UTF-32", "UCS-2", "UCS-4",
                                                          "ISO-10646-UCS"};
    auto upper = [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; };
    return std::any_of(PREFIXES.begin(), PREFIXES.end(), [&](std::string_view prefix) {
        return name.size() >= prefix.size() &&
               std::equal(prefix.begin(), prefix.end(), name.begin(),
                          [&](char expected, char c) { return expected == upper(c); });
    });
}

} // namespace xml
