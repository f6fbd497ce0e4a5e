#pragma once

#include <string>
#include <vector>

#include "colorio/ocio/types.h"

/// Operations on configs, besides those of config.h, that differ between versions of OpenColorIO.
namespace ocio {

/// Throws when OpenColorIO's reader would exhaust the stack or the memory on the file at `path`, or misread
/// it.
void require_readable_config(const std::string& path);

/// An editable copy, with the name of the default view transform, which OpenColorIO 2.1 does not copy.
ConfigRcPtr copy_config(const ConstConfigRcPtr& config);

/// Turns off OpenColorIO's cache of processors, which would return old ones after their files changed.
void turn_processor_cache_off(const ConstConfigRcPtr& config);

/// A context for replacing variables in texts. Not the config's context: in it OpenColorIO 1.x would remember
/// the resolved text as the path of the file with that name.
library::ConstContextRcPtr get_variables(const ConstConfigRcPtr& config);

/// The search path as it is written, entry by entry.
std::vector<std::string> search_path_entries(const ConstConfigRcPtr& config);

} // namespace ocio
