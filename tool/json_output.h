#pragma once

#include <string>

#include <nlohmann/json.hpp>

namespace tool {

struct ConfigSource;

/// {"source": "builtin", "file", "environment" or "preferences", "path": ...}.
nlohmann::ordered_json to_json(const ConfigSource& source);

/// Indented text; bytes that are not UTF-8 are replaced, so that names taken from files cannot break it.
std::string format_json(const nlohmann::ordered_json& value);

} // namespace tool
