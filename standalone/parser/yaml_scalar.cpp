#include "standalone/parser/yaml_scalar.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <initializer_list>
#include <limits>
#include <optional>

#include "host/core/core_string.h"
#include "standalone/core/number_text.h"

namespace {

bool is_one_of(std::string_view text, std::initializer_list<std::string_view> words) {
    return std::find(words.begin(), words.end(), text) != words.end();
}

bool starts_with_sign(std::string_view text) {
    return !text.empty() && (text[0] == '+' || text[0] == '-');
}

// Removes the digits at the start of `text` and counts them.
size_t skip_digits(std::string_view& text) {
    const size_t count = std::min(text.find_first_not_of("0123456789"), text.size());
    text.remove_prefix(count);
    return count;
}

// [-+]? ( \. [0-9]+ | [0-9]+ ( \. [0-9]* )? ) ( [eE] [-+]? [0-9]+ )?
bool is_decimal(std::string_view text) {
    if (starts_with_sign(text))
        text.remove_prefix(1);
    size_t digits = skip_digits(text);
    if (!text.empty() && text[0] == '.') {
        text.remove_prefix(1);
        digits += skip_digits(text);
    }
    if (digits == 0)
        return false;
    if (text.empty())
        return true;
    if (text[0] != 'e' && text[0] != 'E')
        return false;
    text.remove_prefix(1);
    if (starts_with_sign(text))
        text.remove_prefix(1);
    return skip_digits(text) > 0 && text.empty();
}

bool is_integer(std::string_view text) {
    if (starts_with_sign(text))
        text.remove_prefix(1);
    return skip_digits(text) > 0 && text.empty();
}

template <class Integer>
std::optional<Integer> parse_whole(std::string_view digits, int base) {
    Integer value;
    const char* const end = digits.data() + digits.size();
    const auto result = std::from_chars(digits.data(), end, value, base);
    if (result.ec != std::errc() || result.ptr != end)
        return std::nullopt;
    return value;
}

// "0o" and octal digits, or "0x" and hexadecimal ones.
YamlScalar resolve_prefixed(std::string_view text) {
    const int base = text[1] == 'x' ? 16 : 8;
    const auto value = parse_whole<unsigned long long>(text.substr(2), base);
    if (!value)
        return std::string(text);
    if (*value <= static_cast<unsigned long long>(std::numeric_limits<int>::max()))
        return static_cast<int>(*value);
    return static_cast<double>(*value);
}

YamlScalar resolve_decimal(std::string_view text) {
    if (is_integer(text)) {
        const std::string_view digits = text[0] == '+' ? text.substr(1) : text;
        if (const auto value = parse_whole<int>(digits, 10))
            return *value;
    }
    return read_number(text).value;
}

} // namespace

bool is_null_word(std::string_view text) {
    return text.empty() || is_one_of(text, {"~", "null", "Null", "NULL"});
}

YamlScalar resolve_plain_scalar(std::string_view text) {
    if (is_null_word(text))
        return {};
    if (is_decimal(text))
        return resolve_decimal(text);
    if (text.size() > 2 && text[0] == '0' && (text[1] == 'o' || text[1] == 'x'))
        return resolve_prefixed(text);
    if (is_one_of(text, {".nan", ".NaN", ".NAN"}))
        return std::numeric_limits<double>::quiet_NaN();
    const std::string_view unsigned_text = starts_with_sign(text) ? text.substr(1) : text;
    if (is_one_of(unsigned_text, {".inf", ".Inf", ".INF"}))
        return text[0] == '-' ? -HUGE_VAL : HUGE_VAL;
    return std::string(text);
}

std::string real_to_yaml(double value) {
    if (std::isnan(value))
        return ".nan";
    if (std::isinf(value))
        return value < 0 ? "-.inf" : ".inf";
    std::string text(CoreString::from_double(value).view());
    if (text.find('.') == std::string::npos)
        text.insert(std::min(text.find('e'), text.size()), ".0");
    return text;
}
