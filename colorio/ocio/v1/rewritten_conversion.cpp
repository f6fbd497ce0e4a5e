#include "colorio/ocio/rewritten_conversion.h"

namespace ocio {

void rewrite_other_node(const ConfigRcPtr&, const GraphNode&, const RewriteTransform&) {}

void rename_view_source(const TransformRcPtr& transform, const RewriteName& rename) {
    if (const auto view = library::DynamicPtrCast<library::DisplayTransform>(transform))
        view->setInputColorSpaceName(rename(view->getInputColorSpaceName()).c_str());
}

void set_members(const GroupTransformRcPtr& group, const std::vector<TransformRcPtr>& members) {
    group->clear();
    for (const TransformRcPtr& member : members)
        push_back(group, member);
}

} // namespace ocio
