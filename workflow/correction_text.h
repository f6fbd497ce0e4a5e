#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "workflow/correction.h"

namespace workflow {

/// Parses all of `text` as a number, with '.' as the decimal point in every locale. Empty for other texts,
/// infinities, NaN and numbers too large for a float.
std::optional<float> parse_number(std::string_view text);
/// The same. Throws diagnostics::Failure (USAGE) for anything else.
float require_number(std::string_view text);

/// The shortest decimal text that reads back as the same float.
std::string format_number(float value);
/// The double of that text: 1.2 for 1.2f, whose exact value is 1.2000000476837158.
double shorten(float value);
/// The three numbers separated by spaces: "1.2 1 0.9".
std::string format_triple(const float (&values)[3]);
/// "slope 1.2 1 0.9, offset 0 0 0, power 1 1 1, saturation 1".
std::string format_numbers(const Correction& correction);

/// Parses "1.2,1,0.9/0,0,0/1,1,1/0.8": slope, offset and power of red, green and blue, and saturation. Throws
/// diagnostics::Failure, also for a number that the ASC CDL does not allow.
Correction parse_numbers(const std::string& text);
/// Parses "NAME=" followed by such numbers; the name becomes the id. Throws diagnostics::Failure.
Correction parse_named_numbers(const std::string& text);
/// Parses several of them for a document. Throws diagnostics::Failure, also for a name that is given twice,
/// or that of the CDL that changes nothing.
std::vector<Correction> parse_named_numbers(const std::vector<std::string>& texts);

/// Parses "R,G,B" or "R,G,B,A"; the default of alpha is 1. Empty for other texts.
std::optional<std::array<float, 4>> parse_color(const std::string& text);

} // namespace workflow
