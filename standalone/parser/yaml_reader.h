#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "host/host_export.h"

class ParserGroup;

/// Why a YAML text cannot be read.
struct YamlFault {
    unsigned int line;   ///< From 1; 0 without a position.
    unsigned int column; ///< From 1; 0 without a position.
    std::string reason;  ///< In words, without the position.

    /// ":line:column: reason", to follow the path; ": reason" without a position.
    HOST_API std::string describe() const;
};

/// Appends the entries of the YAML document `text` to `group`. A map is a group; a list is an entry with
/// several values, in which null is the empty string; a list tagged !!pairs, or a top-level list of one-pair
/// maps, is a group whose names may repeat. Empty on success; after an error `group` contains the entries
/// before it.
HOST_API std::optional<YamlFault> read_yaml(std::string_view text, ParserGroup& group);
