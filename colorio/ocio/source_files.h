#pragma once

#include <string>
#include <vector>

#include <OpenColorIO/OpenColorTypes.h>

namespace ocio {

/// Paths of the LUT and CDL files of the config's transforms, sorted, each once; for a relative name one path
/// in each folder of the search path. Variables are replaced. Files may not exist.
std::vector<std::string> get_source_files(const OCIO_NAMESPACE::ConstConfigRcPtr& config);

} // namespace ocio
