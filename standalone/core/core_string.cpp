#include "host/core/core_string.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace {

template <class Number>
CoreString to_text(Number value) {
    std::array<char, 64> characters;
    const auto result = std::to_chars(characters.data(), characters.data() + characters.size(), value);
    return CoreString(std::string_view(characters.data(), result.ptr - characters.data()));
}

char to_lower(char character) {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

} // namespace

CoreString::CoreString(const CoreBasicString& other) : CoreBasicString(other) {}

CoreString CoreString::from_float(float value) {
    return to_text(value);
}

CoreString CoreString::from_double(double value) {
    return to_text(value);
}

CoreString CoreString::from_unsigned(unsigned int value) {
    return to_text(value);
}

CoreString CoreString::from_int(int value) {
    return to_text(value);
}

const CoreString& CoreString::get_null_string() {
    static const auto* const null_string = new CoreString;
    return *null_string;
}

CoreString CoreString::after_first(const CoreBasicString& text, char separator) {
    const std::string_view all = text.view();
    const size_t position = all.find(separator);
    return position == std::string_view::npos ? CoreString(text) : CoreString(all.substr(position + 1));
}

CoreString CoreString::before_first(const CoreBasicString& text, char separator) {
    return CoreString(text.view().substr(0, text.view().find(separator)));
}

void CoreString::set_data(const char* characters) {
    text = characters ? std::string(characters) : std::string();
}

void CoreString::lower_case() {
    std::transform(text.begin(), text.end(), text.begin(), to_lower);
}

void CoreString::replace(char from, char to) {
    std::replace(text.begin(), text.end(), from, to);
}

void CoreString::replace(const CoreBasicString& from, const CoreBasicString& to, bool all) {
    if (from.is_empty())
        return;
    const std::string_view old = text;
    std::string replaced;
    size_t begin = 0;
    for (size_t found; (found = old.find(from.view(), begin)) != std::string_view::npos;) {
        replaced.append(old, begin, found - begin).append(to.view());
        begin = found + from.get_count();
        if (!all)
            break;
    }
    text = replaced.append(old, begin);
}

CoreString& CoreString::operator+=(char character) {
    text += character;
    return *this;
}

CoreString& CoreString::operator+=(const CoreBasicString& other) {
    text += other.view();
    return *this;
}

CoreString operator+(const CoreBasicString& a, const CoreBasicString& b) {
    CoreString sum(a);
    sum += b;
    return sum;
}

CoreString operator+(const CoreBasicString& a, char b) {
    CoreString sum(a);
    sum += b;
    return sum;
}
