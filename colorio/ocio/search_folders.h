#pragma once

#include <string>
#include <vector>

#include <OpenColorIO/OpenColorTypes.h>

namespace ocio {

/// Folders in which the config's files are searched, in order. Variables are replaced; relative entries start
/// at the config's folder, which is the only one without a search path. Folders may not exist.
std::vector<std::string> get_search_folders(const OCIO_NAMESPACE::ConstConfigRcPtr& config);

} // namespace ocio
