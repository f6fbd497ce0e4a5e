#pragma once

#include <string>
#include <string_view>
#include <variant>

/// A scalar of a YAML text: nothing, a string, an integer or a real number.
using YamlScalar = std::variant<std::monostate, std::string, int, double>;

/// The value of an unquoted scalar in the core schema of YAML 1.2 (section 10.3.2), in every locale. An
/// integer beyond the range of int is a real number; the words true and false are strings, since entries have
/// no booleans.
YamlScalar resolve_plain_scalar(std::string_view text);

/// A real number in the shortest form that reads back to the same bits and is a real number in both YAML 1.1
/// and 1.2. Every NaN is ".nan".
std::string real_to_yaml(double value);

/// Whether `text` is an unquoted null: empty, "~", or null in lower, upper or title case.
bool is_null_word(std::string_view text);
