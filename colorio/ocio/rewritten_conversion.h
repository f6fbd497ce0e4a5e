#pragma once

#include <functional>
#include <string>
#include <vector>

#include "colorio/ocio/graph_node.h"
#include "colorio/ocio/transform.h"

namespace ocio {

/// A conversion and the config that it belongs to.
struct Conversion {
    ConstConfigRcPtr config;
    ConstTransformRcPtr transform;
};

/// Changes a transform that is not a group, in place.
using RewriteTransform = std::function<void(const TransformRcPtr&)>;
/// Changes a name that a look or a transform refers to.
using RewriteName = std::function<std::string(const std::string&)>;

/// Changes every transform of `nodes` in `config`, and renames the process spaces of looks; a null function
/// does not change them. Returns `config` and a changed copy of `transform`.
Conversion rewrite_conversion(const ConfigRcPtr& config, const ConstTransformRcPtr& transform,
                              const std::vector<GraphNode>& nodes, const RewriteTransform& rewrite,
                              const RewriteName& rename = {});

/// A copy with every member changed; null for null. Groups are as deep as a checked conversion may nest.
TransformRcPtr rewrite_transform(const ConstTransformRcPtr& transform, const RewriteTransform& rewrite);

/// The same for the objects of newer versions of OpenColorIO in the config: named transforms and view
/// transforms.
void rewrite_other_node(const ConfigRcPtr& config, const GraphNode& node, const RewriteTransform& rewrite);

/// Renames the source color space of a transform through a view; ignores other transforms.
void rename_view_source(const TransformRcPtr& transform, const RewriteName& rename);

/// Replaces the group's members by as many others.
void set_members(const GroupTransformRcPtr& group, const std::vector<TransformRcPtr>& members);

} // namespace ocio
