#pragma once

#include <string_view>

/// A number found at the start of a text, and how many characters it takes (0 when there is none).
struct NumberText {
    double value = 0;
    size_t length = 0;
};

/// Reads a decimal number, "inf" or "nan" (any case, optional sign) at the first character of `text`, with
/// '.' as the decimal point whatever the process locale. Beyond the range of a double it is an infinity,
/// below it 0 or the nearest denormal, with the sign.
NumberText read_number(std::string_view text);
