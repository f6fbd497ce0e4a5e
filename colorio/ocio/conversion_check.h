#pragma once

#include <map>
#include <string>
#include <vector>

#include "colorio/ocio/graph_node.h"
#include "colorio/ocio/types.h"

namespace ocio {

/// The parts of a conversion.
struct ConversionParts {
    std::vector<GraphNode> nodes;             ///< color spaces, looks and the like
    std::map<std::string, std::string> files; ///< sources of file transforms, and the paths of the files
    std::vector<FileUse> uses;                ///< of the files
    std::vector<std::string> missing;         ///< sources whose files are not found
};

/// Throws when OpenColorIO could not build the conversion without overflowing its stack, its memory or a
/// buffer: the transforms that it reaches form a cycle (the message names the members), are nested or
/// repeated too often, use context variables that expand too far, or read a file with which OpenColorIO's
/// text readers would overflow. Other errors are left to OpenColorIO. Files that are not found are listed in
/// `missing`.
ConversionParts check_conversion(const ConstConfigRcPtr& config, const ConstTransformRcPtr& conversion);

} // namespace ocio
