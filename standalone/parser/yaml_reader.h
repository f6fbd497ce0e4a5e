#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "host/host_export.h"

class ParserGroup;

/// Appends the entries of the YAML document `text` to `group`. A map is a group; a list is an entry with
/// several values, where null is the empty string; a list tagged !!pairs, or one of one-pair maps at the top,
/// is a group whose names may repeat. Answers nothing on success, else ":line:column: reason", or ": reason"
/// when the error has no place; `group` then holds what was read before it.
HOST_API std::optional<std::string> read_yaml(std::string_view text, ParserGroup& group);
