#pragma once

#include <string>
#include <vector>

#include "colorio/ocio/types.h"

/// What configurations ask of each version of the library besides the operations of config.h.
namespace ocio {

/// Throws when the library's reader would exhaust the stack or the memory on the file at `path`, or misread
/// it.
void require_readable_config(const std::string& path);

/// Has the library make a processor whenever one is asked for: an old one would be handed out again after its
/// files changed.
void turn_processor_cache_off(const ConstConfigRcPtr& config);

/// What to ask for text with its variables replaced. Not the configuration's own context: the 1.x library
/// keeps a resolved text as the place of the file of that name.
library::ConstContextRcPtr get_variables(const ConstConfigRcPtr& config);

/// The search path as it is written, entry by entry.
std::vector<std::string> search_path_entries(const ConstConfigRcPtr& config);

} // namespace ocio
