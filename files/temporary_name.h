#pragma once

#include <string>
#include <string_view>

namespace files {

/// A name that is very probably unique: ".qb_colorio-PID-COUNT-TIME.tmp" and `extension`, which begins with
/// '.' or is empty. Short, so that files with the longest names can be replaced too.
std::string make_temporary_name(std::string_view extension);

/// Whether `name` has exactly that form: decimal numbers, then 16 hexadecimal digits.
bool is_temporary_name(std::string_view name);

} // namespace files
