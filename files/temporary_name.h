#pragma once

#include <string>
#include <string_view>

namespace files {

/// A name that no other temporary file has, in all likelihood: ".qb_colorio-PID-COUNT-TIME.tmp" and
/// `extension`, which begins with a '.' or is empty. Short, so that the longest names can be replaced too.
std::string make_temporary_name(std::string_view extension);

/// Whether `name` is of that kind.
bool is_temporary_name(std::string_view name);

} // namespace files
