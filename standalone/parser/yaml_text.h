#pragma once

#include <string>
#include <string_view>

/// `text` as a double-quoted scalar on one line; bytes that are not UTF-8 as !!binary.
std::string quote_yaml(std::string_view text);

/// `name` and what ends it, where an entry begins in a column of its own `indent` characters into the line:
/// "name:", unquoted when every YAML reader takes it for a text, or for a long one "? name", a line end and
/// ":".
std::string quote_yaml_name(std::string_view name, size_t indent);
