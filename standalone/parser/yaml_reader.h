#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "host/host_export.h"

class ParserGroup;

/// Why a YAML text cannot be read.
struct YamlFault {
    unsigned int line;   ///< From 1; 0 when the fault has no place.
    unsigned int column; ///< From 1; 0 when the fault has no place.
    std::string reason;

    /// ":line:column: reason", to stand behind the path; ": reason" without a place.
    HOST_API std::string describe() const;
};

/// Appends the entries of the YAML document `text` to `group`. A map is a group; a list is an entry with
/// several values, where null is the empty string; a list tagged !!pairs, or one of one-pair maps at the top,
/// is a group whose names may repeat. Returns nothing on success;
/// otherwise `group` holds what was read before the fault.
HOST_API std::optional<YamlFault> read_yaml(std::string_view text, ParserGroup& group);
