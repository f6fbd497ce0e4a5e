#pragma once

#include <array>
#include <cstddef>
#include <string>

#include "viewer/view_settings.h"

/// The arguments of script commands. All functions throw diagnostics::Failure (SCRIPT_FAILED) for a text that
/// is not such a value.
namespace viewer {

/// What separates words on a line of a script.
inline constexpr char SCRIPT_BLANKS[] = " \t\r";

/// A finite number.
double parse_number(const std::string& text);
/// A number above 0.
double parse_factor(const std::string& text);
/// Exactly `count` numbers, separated by blanks.
void parse_numbers(const std::string& text, float* numbers, std::size_t count);
/// Exactly COUNT numbers, separated by blanks.
template <std::size_t COUNT>
std::array<float, COUNT> parse_numbers(const std::string& text) {
    std::array<float, COUNT> numbers;
    parse_numbers(text, numbers.data(), COUNT);
    return numbers;
}
/// "on" or "off".
bool parse_switch(const std::string& text);
/// "single", "wipe", "two" or "difference".
Layout parse_layout(const std::string& word);

} // namespace viewer
