#include "conformance/check.h"

namespace conformance {

namespace {

std::string quote(std::string_view text) {
    constexpr const char* DIGITS = "0123456789ABCDEF";
    std::string quoted = "'";
    for (const unsigned char character : text) {
        if (character >= 0x20 && character < 0x7F)
            quoted += static_cast<char>(character);
        else
            quoted.append("\\x").append(1, DIGITS[character >> 4]).append(1, DIGITS[character & 15]);
    }
    return quoted + "'";
}

std::string compare(std::string_view what, const std::string& found, const std::string& expected) {
    return std::string(what) + ": found " + found + ", expected " + expected;
}

} // namespace

void Findings::expect(bool holds, std::string_view what) {
    if (!holds)
        lines.emplace_back(what);
}

void Findings::expect_text(std::string_view found, std::string_view expected, std::string_view what) {
    if (found != expected)
        lines.push_back(compare(what, quote(found), quote(expected)));
}

void Findings::expect_number(unsigned long long found, unsigned long long expected, std::string_view what) {
    if (found != expected)
        lines.push_back(compare(what, std::to_string(found), std::to_string(expected)));
}

} // namespace conformance
