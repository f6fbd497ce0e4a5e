#pragma once

#include <optional>
#include <string>

#include "host/host_export.h"

class ParserGroup;

/// The YAML text that `read_yaml` reads back to the same entries: their names, order, kinds and bits. A group
/// is a map, or a list tagged !!pairs when names repeat in it. Nothing when groups are nested deeper than
/// MAX_GROUP_DEPTH.
HOST_API std::optional<std::string> write_yaml(const ParserGroup& group);
