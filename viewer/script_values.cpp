#include "viewer/script_values.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <utility>

#include <fmt/format.h>

#include "diagnostics/failure.h"

namespace viewer {

using diagnostics::Code;
using diagnostics::fail;

double parse_number(const std::string& text) {
    double number = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || stop != end || !std::isfinite(number))
        fail(Code::SCRIPT_FAILED, fmt::format("'{}' is not a number", text));
    return number;
}

double parse_factor(const std::string& text) {
    const double factor = parse_number(text);
    if (factor <= 0)
        fail(Code::SCRIPT_FAILED, fmt::format("'{}' is not a positive number", text));
    return factor;
}

void parse_numbers(const std::string& text, float* numbers, std::size_t count) {
    std::string rest = text;
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t gap = std::min(rest.find_first_of(SCRIPT_BLANKS), rest.size());
        numbers[i] = static_cast<float>(parse_number(rest.substr(0, gap)));
        rest.erase(0, rest.find_first_not_of(SCRIPT_BLANKS, gap));
    }
    if (!rest.empty())
        fail(Code::SCRIPT_FAILED, fmt::format("'{}' has more than {} numbers", text, count));
}

bool parse_switch(const std::string& text) {
    if (text != "on" && text != "off")
        fail(Code::SCRIPT_FAILED, fmt::format("'{}' is neither 'on' nor 'off'", text));
    return text == "on";
}

Layout parse_layout(const std::string& word) {
    constexpr std::pair<const char*, Layout> LAYOUTS[] = {{"single", Layout::SINGLE},
                                                          {"wipe", Layout::WIPE},
                                                          {"two", Layout::SIDE_BY_SIDE},
                                                          {"difference", Layout::DIFFERENCE}};
    for (const auto& [name, layout] : LAYOUTS)
        if (word == name)
            return layout;
    fail(Code::SCRIPT_FAILED, fmt::format("no layout '{}'", word), "layouts: single, wipe, two, difference");
}

} // namespace viewer
