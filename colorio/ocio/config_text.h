#pragma once

#include <optional>
#include <string>

namespace ocio {

/// The text of the config at `path`; nothing for what cannot be opened and for archives.
std::optional<std::string> read_config_text(const std::string& path);

} // namespace ocio
