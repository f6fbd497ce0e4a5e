#include "colorio/ocio/transform_graph.h"

#include "colorio/ocio/dependency_collector.h"
#include "colorio/ocio/lookup_memo.h"

namespace ocio {

std::vector<GraphNode> TransformGraph::get_nodes() const {
    std::vector<GraphNode> nodes = list_own_nodes(config_);
    for (int i = 0; i < config_->getNumLooks(); ++i)
        add_both_ways(NodeKind::LOOK, config_->getLookNameByIndex(i), nodes);
    return nodes;
}

Dependencies TransformGraph::dependencies_of(const GraphNode& node) const {
    const auto collector = create_dependency_collector(config_);
    if (node.kind == NodeKind::COLOR_SPACE)
        collector->add_space(*find_space(config_, node.name));
    else if (node.kind == NodeKind::LOOK)
        collector->add_look(*config_->getLook(node.name.c_str()), node.inverse);
    else
        collector->add_other_node(node);
    return collector->take();
}

Dependencies TransformGraph::dependencies_of(const ConstTransformRcPtr& transform) const {
    const auto collector = create_dependency_collector(config_);
    collector->add(transform, false);
    return collector->take();
}

} // namespace ocio
