#include "standalone/core/number_text.h"

#include <locale.h>

#include <charconv>
#include <cstdlib>
#include <string>

namespace {

// from_chars leaves a value out of range unset; strtod says which end of the range it passed.
double saturated(std::string_view number) {
    static const locale_t c_locale = newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(nullptr));
    return strtod_l(std::string(number).c_str(), nullptr, c_locale);
}

} // namespace

NumberText read_number(std::string_view text) {
    const bool plus = text.size() > 1 && text[0] == '+' && text[1] != '-';
    const char* begin = text.data() + (plus ? 1 : 0);
    NumberText number;
    const auto result = std::from_chars(begin, text.data() + text.size(), number.value);
    if (result.ptr == begin)
        return {};
    number.length = static_cast<size_t>(result.ptr - text.data());
    if (result.ec == std::errc::result_out_of_range)
        number.value = saturated({begin, static_cast<size_t>(result.ptr - begin)});
    return number;
}
