#include "host/core/core_string.h"

#include <algorithm>

#include "host/core/core_hash.h"
#include "standalone/core/number_text.h"

namespace {

constexpr std::string_view BLANKS = " \t\n\v\f\r";

} // namespace

CoreBasicString::CoreBasicString(const char* characters) : text(characters ? characters : "") {}

CoreBasicString::CoreBasicString(const CoreStringView& view) : text(view.data, view.length) {}

CoreBasicString::CoreBasicString(std::string_view view) : text(view) {}

unsigned int CoreBasicString::get_hash() const {
    return CoreHash::generate_jenkins(text.data(), get_count());
}

unsigned int CoreBasicString::find(char character, unsigned int start) const {
    return static_cast<unsigned int>(text.find(character, start)); // npos narrows to 0xFFFFFFFF
}

bool CoreBasicString::start_with(const CoreBasicString& prefix) const {
    return text.compare(0, prefix.text.size(), prefix.text) == 0;
}

CoreString CoreBasicString::get_lower_case() const {
    CoreString lower(*this);
    lower.lower_case();
    return lower;
}

CoreVector<CoreString> CoreBasicString::split(char separator) const {
    CoreVector<CoreString> pieces;
    if (text.empty())
        return pieces;
    const std::string_view all = text;
    size_t begin = 0;
    for (size_t end; (end = all.find(separator, begin)) != std::string_view::npos; begin = end + 1)
        pieces.append(CoreString(all.substr(begin, end - begin)));
    pieces.append(CoreString(all.substr(begin)));
    return pieces;
}

CoreVector<CoreString> CoreBasicString::split_word(const CoreBasicString& separators) const {
    const std::string_view between = separators == " " ? BLANKS : separators.view();
    const std::string_view all = text;
    CoreVector<CoreString> words;
    for (size_t begin = 0; (begin = all.find_first_not_of(between, begin)) != std::string_view::npos;) {
        const size_t end = std::min(all.find_first_of(between, begin), all.size());
        words.append(CoreString(all.substr(begin, end - begin)));
        begin = end;
    }
    return words;
}

double CoreBasicString::to_double() const {
    const std::string_view all = text;
    const size_t begin = std::min(all.find_first_not_of(BLANKS), all.size());
    return read_number(all.substr(begin)).value;
}
