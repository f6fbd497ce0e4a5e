#pragma once

#include <string>
#include <vector>

#include <OpenColorIO/OpenColorTypes.h>

namespace ocio {

/// Folders in which the configuration's files are looked for, in order. Variables are replaced, relative
/// entries start at the configuration's own folder, which stands alone where there is no search path. Folders
/// may not exist.
std::vector<std::string> get_search_folders(const OCIO_NAMESPACE::ConstConfigRcPtr& config);

} // namespace ocio
