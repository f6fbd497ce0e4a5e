#pragma once

#include <string>
#include <string_view>

/// `text` as a double-quoted scalar on one line; bytes that are not UTF-8 as !!binary.
std::string quote_yaml(std::string_view text);

/// `name` as the name of an entry: unquoted when every YAML reader takes it for a text.
std::string quote_yaml_name(std::string_view name);
