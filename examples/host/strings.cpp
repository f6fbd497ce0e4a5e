#include <locale.h>

#include <charconv>
#include <cstdlib>

#include "host/core/core_string.h"

CoreBasicString::CoreBasicString(const char* characters) : text(characters ? characters : "") {}
CoreBasicString::CoreBasicString(const CoreStringView& view) : text(view.data, view.length) {}
CoreBasicString::CoreBasicString(std::string_view view) : text(view) {}
CoreString::CoreString(const CoreBasicString& other) : CoreBasicString(other) {}

unsigned int CoreBasicString::find(char character, unsigned int start) const {
    return static_cast<unsigned int>(text.find(character, start)); // npos becomes 0xFFFFFFFF
}

bool CoreBasicString::start_with(const CoreBasicString& prefix) const {
    return text.compare(0, prefix.text.size(), prefix.text) == 0;
}

CoreString CoreBasicString::get_lower_case() const {
    std::string lower = text;
    for (char& character : lower)
        if (character >= 'A' && character <= 'Z')
            character = static_cast<char>(character - 'A' + 'a');
    return CoreString(std::string_view(lower));
}

CoreVector<CoreString> CoreBasicString::split(char separator) const {
    CoreVector<CoreString> pieces;
    for (size_t begin = 0, end = 0; !text.empty() && end != text.npos; begin = end + 1) {
        end = text.find(separator, begin);
        pieces.append(CoreString(std::string_view(text.substr(begin, end - begin))));
    }
    return pieces;
}

CoreVector<CoreString> CoreBasicString::split_word(const CoreBasicString& separators) const {
    const std::string between = separators == " " ? " \t\n\v\f\r" : separators.text;
    CoreVector<CoreString> words;
    for (size_t end = 0, begin; (begin = text.find_first_not_of(between, end)) != text.npos;) {
        end = text.find_first_of(between, begin);
        words.append(CoreString(std::string_view(text.substr(begin, end - begin))));
    }
    return words;
}

double CoreBasicString::to_double() const {
    size_t begin = text.find_first_not_of(" \t\n\v\f\r");
    if (begin != text.npos && text[begin] == '+' && text[begin + 1] != '-')
        ++begin; // from_chars takes no '+'
    if (begin == text.npos)
        return 0;
    double value = 0;
    const auto result = std::from_chars(text.data() + begin, text.data() + text.size(), value);
    if (result.ec != std::errc::result_out_of_range)
        return value;
    static const locale_t c_locale = newlocale(LC_ALL_MASK, "C", nullptr);
    return strtod_l(text.c_str() + begin, nullptr, c_locale); // infinity, or the nearest small number
}

CoreString CoreString::from_float(float value) {
    char characters[64];
    return CoreString(std::string_view(
        characters, std::to_chars(characters, std::end(characters), value).ptr - characters));
}

CoreString CoreString::from_unsigned(unsigned int value) {
    return CoreString(std::to_string(value).c_str());
}

CoreString CoreString::after_first(const CoreBasicString& text, char separator) {
    const size_t position = text.view().find(separator);
    return CoreString(position == std::string_view::npos ? text.view() : text.view().substr(position + 1));
}

CoreString CoreString::before_first(const CoreBasicString& text, char separator) {
    return CoreString(text.view().substr(0, text.view().find(separator)));
}

void CoreString::replace(char from, char to) {
    for (char& character : text)
        if (character == from)
            character = to;
}

void CoreString::replace(const CoreBasicString& from, const CoreBasicString& to, bool all) {
    size_t position = from.is_empty() ? text.npos : text.find(from.view());
    while (position != text.npos) {
        text.replace(position, from.get_count(), to.view());
        position = all ? text.find(from.view(), position + to.get_count()) : text.npos;
    }
}

CoreString operator+(const CoreBasicString& a, const CoreBasicString& b) {
    return CoreString(std::string_view(std::string(a.view()).append(b.view())));
}

CoreString operator+(const CoreBasicString& a, char b) {
    return CoreString(std::string_view(std::string(a.view()) + b));
}
