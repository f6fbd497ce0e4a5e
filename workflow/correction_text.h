#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "workflow/correction.h"

namespace workflow {

/// A number that all of `text` spells, '.' as the decimal point whatever the locale. Nothing for anything
/// else, for infinities and for what a float cannot hold.
std::optional<float> parse_number(std::string_view text);

/// The fewest digits that mean this float.
std::string format_number(float value);
/// The double that those digits spell: 1.2 for 1.2f, which is 1.2000000476837158.
double shorten(float value);
/// "1.2 1 0.9".
std::string format_triple(const float (&values)[3]);

/// The numbers in "1.2,1,0.9/0,0,0/1,1,1/0.8": slope, offset and power of red, green and blue, and the
/// saturation. Throws diagnostics::Failure, also for a number that the ASC CDL does not allow.
Correction parse_numbers(const std::string& text);
/// "NAME=" in front of such numbers. Throws diagnostics::Failure.
Correction parse_named_numbers(const std::string& text);

} // namespace workflow
