#include "colorio/ocio/dependency_collector.h"

#include <algorithm>

#include "colorio/ocio/color_space.h"
#include "colorio/ocio/context_variables.h"
#include "colorio/ocio/lookup_memo.h"
#include "colorio/ocio/transform.h"

namespace ocio {

void DependencyCollector::add(const ConstTransformRcPtr& root, bool inverse) {
    std::vector<Pending> pending{{root, inverse, 0}};
    while (!pending.empty()) {
        const Pending next = std::move(pending.back());
        pending.pop_back();
        const bool backwards = next.inverse != (next.transform->getDirection() == TRANSFORM_DIR_INVERSE);
        if (const auto* group = dynamic_cast<const library::GroupTransform*>(next.transform.get()))
            push_members(*group, backwards, next.depth + 1, pending);
        else
            add_single(*next.transform, backwards);
    }
}

void DependencyCollector::push_members(const library::GroupTransform& group, bool inverse, std::size_t depth,
                                       std::vector<Pending>& pending) {
    found_.group_depth = std::max(found_.group_depth, depth);
    for (int i = get_size(group); i-- > 0;)
        pending.push_back({group.getTransform(i), inverse, depth});
}

void DependencyCollector::add_single(const library::Transform& transform, bool inverse) {
    ++found_.transforms;
    if (const auto* file = dynamic_cast<const library::FileTransform*>(&transform)) {
        found_.files.push_back({file->getSrc(), file->getCCCId()});
        add_texts({file->getSrc(), file->getCCCId()});
    } else if (const auto* conversion = dynamic_cast<const library::ColorSpaceTransform*>(&transform)) {
        add_texts({conversion->getSrc(), conversion->getDst()});
        add_path(conversion->getSrc(), {}, conversion->getDst(), inverse);
    } else if (const auto* looks = dynamic_cast<const library::LookTransform*>(&transform)) {
        add_texts({looks->getSrc(), looks->getDst(), looks->getLooks()});
        for (const std::vector<LookStep>& steps : look_alternatives(looks->getLooks()))
            add_path(looks->getSrc(), steps, looks->getDst(), inverse);
    } else {
        add_other_transform(transform, inverse);
    }
}

void DependencyCollector::add_space(const library::ColorSpace& space) {
    const ConstTransformRcPtr to_reference = space.getTransform(COLORSPACE_DIR_TO_REFERENCE);
    const ConstTransformRcPtr from_reference = space.getTransform(COLORSPACE_DIR_FROM_REFERENCE);
    for (const ConstTransformRcPtr& transform : {to_reference, from_reference})
        if (transform)
            add(transform, false);
    // A lone transform serves both ways, which matters for the looks and named transforms in it.
    if (!to_reference != !from_reference)
        add_other_uses(to_reference ? to_reference : from_reference);
}

/// What the transform refers to when it is applied backwards and not when it is applied forwards.
void DependencyCollector::add_other_uses(const ConstTransformRcPtr& transform) {
    const std::unique_ptr<DependencyCollector> backwards = create_another();
    backwards->add(transform, true);
    for (GraphNode& node : backwards->found_.nodes)
        if (std::find(found_.nodes.begin(), found_.nodes.end(), node) == found_.nodes.end())
            found_.nodes.push_back(std::move(node));
}

void DependencyCollector::add_look(const library::Look& look, bool inverse) {
    add_texts({look.getProcessSpace()});
    // A look is entered from and left to its process space.
    for (int use = 0; use < 2; ++use)
        if (const ConstColorSpaceRcPtr space = find_space(look.getProcessSpace()))
            add_node(NodeKind::COLOR_SPACE, get_name(space), false);
    add_one_of(look.getTransform(), look.getInverseTransform(), inverse);
}

void DependencyCollector::add_one_of(const ConstTransformRcPtr& forward, const ConstTransformRcPtr& backward,
                                     bool inverse) {
    const ConstTransformRcPtr& wanted = inverse ? backward : forward;
    const ConstTransformRcPtr& other = inverse ? forward : backward;
    if (wanted || other)
        add(wanted ? wanted : other, !wanted);
}

void DependencyCollector::add_node(NodeKind kind, const char* name, bool inverse) {
    found_.nodes.push_back({kind, name, inverse});
}

void DependencyCollector::add_texts(std::initializer_list<const char*> texts) {
    for (const char* text : texts)
        if (may_hold_variables(text))
            found_.texts.emplace_back(text);
}

ConstColorSpaceRcPtr DependencyCollector::find_space(const std::string& name) const {
    return ocio::find_space(config_, resolve(name));
}

std::string DependencyCollector::resolve(const std::string& name) const {
    return resolve_variables(config_, name);
}

void add_both_ways(NodeKind kind, const char* name, std::vector<GraphNode>& nodes) {
    for (const bool inverse : {false, true})
        nodes.push_back({kind, name, inverse});
}

} // namespace ocio
