#pragma once

#include <string>
#include <string_view>

/// `text` as a double-quoted scalar on one line, or as !!binary when it is not UTF-8.
std::string quote_yaml(std::string_view text);

/// The key of an entry that begins after `indent` characters on its line: "name:", unquoted where every YAML
/// reader takes it as a string. A long name becomes "? name", a line end and ":".
std::string quote_yaml_name(std::string_view name, size_t indent);
