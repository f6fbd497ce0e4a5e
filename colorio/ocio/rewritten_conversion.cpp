#include "colorio/ocio/rewritten_conversion.h"

#include <set>
#include <utility>

#include "colorio/ocio/color_space.h"
#include "colorio/ocio/transform.h"

namespace ocio {

namespace {

void rewrite_members(const GroupTransformRcPtr& group, const RewriteTransform& rewrite) {
    std::vector<TransformRcPtr> members;
    for (int i = 0; i < get_size(*group); ++i)
        members.push_back(rewrite_transform(group->getTransform(i), rewrite));
    set_members(group, members);
}

void rewrite_space(const ConfigRcPtr& config, const std::string& name, const RewriteTransform& rewrite) {
    const library::ColorSpaceRcPtr space = config->getColorSpace(name.c_str())->createEditableCopy();
    for (const auto direction : {COLORSPACE_DIR_TO_REFERENCE, COLORSPACE_DIR_FROM_REFERENCE})
        set_transform(space, rewrite_transform(get_transform(space, direction), rewrite), direction);
    config->addColorSpace(space);
}

void rewrite_look(const ConfigRcPtr& config, const std::string& name, const RewriteTransform& rewrite,
                  const RewriteName& rename) {
    const library::LookRcPtr look = config->getLook(name.c_str())->createEditableCopy();
    if (rename)
        look->setProcessSpace(rename(look->getProcessSpace()).c_str());
    // OpenColorIO takes no null here.
    if (const TransformRcPtr transform = rewrite_transform(look->getTransform(), rewrite))
        look->setTransform(transform);
    if (const TransformRcPtr inverse = rewrite_transform(look->getInverseTransform(), rewrite))
        look->setInverseTransform(inverse);
    config->addLook(look);
}

void rewrite_node(const ConfigRcPtr& config, const GraphNode& node, const RewriteTransform& rewrite,
                  const RewriteName& rename) {
    if (node.kind == NodeKind::COLOR_SPACE)
        rewrite_space(config, node.name, rewrite);
    else if (node.kind == NodeKind::LOOK)
        rewrite_look(config, node.name, rewrite, rename);
    else
        rewrite_other_node(config, node, rewrite);
}

} // namespace

TransformRcPtr rewrite_transform(const ConstTransformRcPtr& transform, const RewriteTransform& rewrite) {
    if (!transform)
        return {};
    const TransformRcPtr copy = transform->createEditableCopy();
    if (const auto group = library::DynamicPtrCast<library::GroupTransform>(copy))
        rewrite_members(group, rewrite);
    else
        rewrite(copy);
    return copy;
}

Conversion rewrite_conversion(const ConfigRcPtr& config, const ConstTransformRcPtr& transform,
                              const std::vector<GraphNode>& nodes, const RewriteTransform& rewrite,
                              const RewriteName& rename) {
    std::set<std::pair<NodeKind, std::string>> done; // a node comes once for each direction
    for (const GraphNode& node : nodes)
        if (done.emplace(node.kind, node.name).second)
            rewrite_node(config, node, rewrite, rename);
    return {config, rewrite_transform(transform, rewrite)};
}

} // namespace ocio
