#pragma once

#include <map>
#include <string>
#include <vector>

#include "colorio/ocio/transform_graph.h"

namespace ocio {

/// What a conversion consists of.
struct ConversionParts {
    std::vector<GraphNode> nodes;             ///< color spaces, looks and the like
    std::map<std::string, std::string> files; ///< sources of file transforms, and where the files lie
    std::vector<std::string> missing;         ///< sources whose files are not found
};

/// Throws when the library could not build the conversion without overflowing its stack, its memory or a
/// buffer: the transforms that it reaches form a cycle (the message names the members), are nested or
/// repeated beyond measure, name context variables that expand too far, or read a file that the library's
/// text readers cannot hold. Everything else is left to the library to judge. Files that are not found are
/// listed apart.
ConversionParts check_conversion(const ConstConfigRcPtr& config, const ConstTransformRcPtr& conversion);

} // namespace ocio
