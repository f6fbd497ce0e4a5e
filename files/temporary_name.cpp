#include "files/temporary_name.h"

#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>

namespace files {

namespace {

constexpr std::string_view PREFIX = ".qb_colorio-";
constexpr std::string_view MARK = ".tmp";
constexpr std::string_view DECIMAL_DIGITS = "0123456789";
constexpr std::string_view HEXADECIMAL_DIGITS = "0123456789abcdef";
constexpr std::size_t TIME_DIGITS = 16;

/// Takes `prefix` from the front of `text`; false when that begins otherwise.
bool take(std::string_view& text, std::string_view prefix) {
    if (text.substr(0, prefix.size()) != prefix)
        return false;
    text.remove_prefix(prefix.size());
    return true;
}

/// Removes the digits at the front of `text`. Returns their count.
std::size_t take_digits(std::string_view& text, std::string_view digits) {
    const std::size_t count = std::min(text.find_first_not_of(digits), text.size());
    text.remove_prefix(count);
    return count;
}

} // namespace

std::string make_temporary_name(std::string_view extension) {
    static std::atomic<unsigned int> counter{0};
    const auto now = std::chrono::system_clock::now().time_since_epoch().count();
    char number[64];
    std::snprintf(number, sizeof number, "%ld-%u-%016llx", static_cast<long>(getpid()), counter++,
                  static_cast<unsigned long long>(now));
    return std::string(PREFIX) + number + std::string(MARK) + std::string(extension);
}

bool is_temporary_name(std::string_view name) {
    return take(name, PREFIX) && take_digits(name, DECIMAL_DIGITS) > 0 && take(name, "-") &&
           take_digits(name, DECIMAL_DIGITS) > 0 && take(name, "-") &&
           take_digits(name, HEXADECIMAL_DIGITS) == TIME_DIGITS && take(name, MARK) &&
           (name.empty() || name.find_last_of('.') == 0);
}

} // namespace files
