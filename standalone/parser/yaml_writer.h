#pragma once

#include <optional>
#include <string>

#include "host/host_export.h"

class ParserGroup;

/// A YAML text, or why there is none.
struct YamlText {
    std::optional<std::string> text;
    std::string reason; ///< Empty when there is a text.
};

/// The YAML text that `read_yaml` reads back to the same entries: their names, order, kinds and bits. A group
/// is a map, or a list tagged !!pairs when names repeat in it. There is none for what could not be read back:
/// groups nested deeper than MAX_GROUP_DEPTH, more than MAX_VALUE_COUNT entries and values, or a text longer
/// than MAX_FILE_SIZE.
HOST_API YamlText write_yaml(const ParserGroup& group);
