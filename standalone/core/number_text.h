#pragma once

#include <string_view>

/// A number at the start of a text.
struct NumberText {
    double value = 0;  ///< 0 when the text does not start with a number.
    size_t length = 0; ///< Count of its characters; 0 when the text does not start with a number.
};

/// Reads a decimal number, "inf" or "nan" (any case, optional sign) at the first character of `text`, with
/// '.' as the decimal point in every locale. Beyond the range of a double the value is an infinity, below it
/// 0 or the nearest denormal, with the sign.
NumberText read_number(std::string_view text);
