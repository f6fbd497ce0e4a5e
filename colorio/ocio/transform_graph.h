#pragma once

#include <vector>

#include "colorio/ocio/graph_node.h"
#include "colorio/ocio/types.h"

namespace ocio {

/// The references between the transforms of a config, as OpenColorIO follows them when it makes a processor:
/// through both transforms of every color space, the looks and spaces of look transforms, and the color
/// space, view transform and looks of views. Names that are not in the config are left out.
class TransformGraph {
public:
    explicit TransformGraph(const ConstConfigRcPtr& config) : config_(config) {}

    /// Every node of the config, inactive color spaces too; looks and the like both ways.
    std::vector<GraphNode> get_nodes() const;

    Dependencies dependencies_of(const GraphNode& node) const;
    Dependencies dependencies_of(const ConstTransformRcPtr& transform) const;

private:
    ConstConfigRcPtr config_;
};

} // namespace ocio
