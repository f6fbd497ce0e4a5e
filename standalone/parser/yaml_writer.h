#pragma once

#include <optional>
#include <string>

#include "host/host_export.h"

class ParserGroup;

/// A YAML text, or why it could not be made.
struct YamlText {
    std::optional<std::string> text; ///< Empty on failure.
    std::string reason;              ///< Empty on success.
};

/// The YAML text that `read_yaml` reads back to the same entries: names, order, types and bits. A group is a
/// map, or a list tagged !!pairs if its names repeat. Fails for entries that could not be read back: groups
/// nested deeper than MAX_GROUP_DEPTH, more than MAX_VALUE_COUNT entries and values, or a text longer than
/// MAX_FILE_SIZE.
HOST_API YamlText write_yaml(const ParserGroup& group);
