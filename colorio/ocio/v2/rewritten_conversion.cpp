#include "colorio/ocio/rewritten_conversion.h"

namespace ocio {

namespace {

void rewrite_named_transform(const ConfigRcPtr& config, const char* name, const RewriteTransform& rewrite) {
    const library::NamedTransformRcPtr named = config->getNamedTransform(name)->createEditableCopy();
    for (const auto direction : {TRANSFORM_DIR_FORWARD, TRANSFORM_DIR_INVERSE})
        named->setTransform(rewrite_transform(named->getTransform(direction), rewrite), direction);
    config->addNamedTransform(named);
}

void rewrite_view_transform(const ConfigRcPtr& config, const char* name, const RewriteTransform& rewrite) {
    const library::ViewTransformRcPtr view = config->getViewTransform(name)->createEditableCopy();
    for (const auto direction :
         {library::VIEWTRANSFORM_DIR_TO_REFERENCE, library::VIEWTRANSFORM_DIR_FROM_REFERENCE})
        view->setTransform(rewrite_transform(view->getTransform(direction), rewrite), direction);
    config->addViewTransform(view);
}

} // namespace

void rewrite_other_node(const ConfigRcPtr& config, const GraphNode& node, const RewriteTransform& rewrite) {
    if (node.kind == NodeKind::NAMED_TRANSFORM)
        rewrite_named_transform(config, node.name.c_str(), rewrite);
    else
        rewrite_view_transform(config, node.name.c_str(), rewrite);
}

void rename_view_source(const TransformRcPtr& transform, const RewriteName& rename) {
    if (const auto view = library::DynamicPtrCast<library::DisplayViewTransform>(transform))
        view->setSrc(rename(view->getSrc()).c_str());
}

void set_members(const GroupTransformRcPtr& group, const std::vector<TransformRcPtr>& members) {
    for (std::size_t i = 0; i < members.size(); ++i)
        group->getTransform(static_cast<int>(i)) = members[i];
}

} // namespace ocio
