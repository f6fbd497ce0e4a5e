#pragma once

#include "host/core/core_string.h"

/// Makes the file at `path` the active config. False when it is refused and the built-in config is active.
bool load_config_file(const CoreString& path);

/// Uses the active config as a host does: looks up every published name, and converts pixels and makes the
/// shaders of the first few color spaces and views. Ends the process, as a finding, when results contradict
/// each other.
void use_active_config();
