#pragma once

#include <string>
#include <vector>

#include <OpenColorIO/OpenColorTypes.h>

namespace ocio {

/// Paths of the LUT and CDL files that transforms of the configuration name, sorted, each once; of a relative
/// name every path that it may stand for, in each folder of the search path. Variables are replaced. Files
/// may not exist.
std::vector<std::string> get_source_files(const OCIO_NAMESPACE::ConstConfigRcPtr& config);

} // namespace ocio
