#pragma once

#include <string_view>

namespace ocio {

/// The text without blanks and line ends around it.
inline std::string_view trim(std::string_view text) {
    constexpr std::string_view BLANKS = " \t\r\n";
    const std::size_t first = text.find_first_not_of(BLANKS);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(BLANKS) - first + 1);
}

} // namespace ocio
