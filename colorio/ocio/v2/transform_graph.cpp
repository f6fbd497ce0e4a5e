#include "colorio/ocio/v2/transform_graph.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "colorio/ocio/config.h"
#include "colorio/ocio/v2/look_list.h"

namespace ocio {

namespace {

using library::ConstNamedTransformRcPtr;
using library::ConstViewTransformRcPtr;
using library::ReferenceSpaceType;

class DependencyCollector {
public:
    DependencyCollector(const ConstConfigRcPtr& config, const library::ConstContextRcPtr& context)
        : config_(config), context_(context) {}

    Dependencies take() { return std::move(found_); }

    /// Walks a transform and the groups in it.
    void add(const ConstTransformRcPtr& root, bool inverse) {
        std::vector<Pending> pending{{root, inverse, 0}};
        while (!pending.empty()) {
            const Pending next = std::move(pending.back());
            pending.pop_back();
            const bool backwards =
                next.inverse != (next.transform->getDirection() == library::TRANSFORM_DIR_INVERSE);
            if (next.transform->getTransformType() == library::TRANSFORM_TYPE_GROUP)
                push_members(static_cast<const library::GroupTransform&>(*next.transform), backwards,
                             next.depth + 1, pending);
            else
                add_single(*next.transform, backwards);
        }
    }

    /// What the transform refers to when it is applied backwards and not when it is applied forwards.
    void add_other_uses(const ConstTransformRcPtr& transform) {
        DependencyCollector backwards(config_, context_);
        backwards.add(transform, true);
        for (GraphNode& node : backwards.found_.nodes)
            if (std::find(found_.nodes.begin(), found_.nodes.end(), node) == found_.nodes.end())
                found_.nodes.push_back(std::move(node));
    }

    /// Of a pair of transforms that undo each other the one for `inverse`, or else the other one backwards.
    void add_one_of(const ConstTransformRcPtr& forward, const ConstTransformRcPtr& backward, bool inverse) {
        const ConstTransformRcPtr& wanted = inverse ? backward : forward;
        const ConstTransformRcPtr& other = inverse ? forward : backward;
        if (wanted || other)
            add(wanted ? wanted : other, !wanted);
    }

    /// A look is entered from and left to its process space.
    void add_process_space(const char* name) {
        for (int use = 0; use < 2; ++use)
            add_reference(name, false);
    }

private:
    /// Empty for what is no colour space.
    using SpaceType = std::optional<ReferenceSpaceType>;

    struct Pending {
        ConstTransformRcPtr transform;
        bool inverse;
        std::size_t depth;
    };

    void push_members(const library::GroupTransform& group, bool inverse, std::size_t depth,
                      std::vector<Pending>& pending) {
        found_.group_depth = std::max(found_.group_depth, depth);
        for (int i = group.getNumTransforms(); i-- > 0;)
            pending.push_back({group.getTransform(i), inverse, depth});
    }

    void add_single(const library::Transform& transform, bool inverse) {
        ++found_.transforms;
        switch (transform.getTransformType()) {
        case library::TRANSFORM_TYPE_FILE:
            found_.files.emplace_back(static_cast<const library::FileTransform&>(transform).getSrc());
            break;
        case library::TRANSFORM_TYPE_COLORSPACE:
            add_conversion(static_cast<const library::ColorSpaceTransform&>(transform), inverse);
            break;
        case library::TRANSFORM_TYPE_LOOK:
            add_looks(static_cast<const library::LookTransform&>(transform), inverse);
            break;
        case library::TRANSFORM_TYPE_DISPLAY_VIEW:
            add_view(static_cast<const library::DisplayViewTransform&>(transform), inverse);
            break;
        default:
            break;
        }
    }

    void add_conversion(const library::ColorSpaceTransform& transform, bool inverse) {
        add_path(transform.getSrc(), {}, transform.getDst(), inverse);
    }

    void add_looks(const library::LookTransform& transform, bool inverse) {
        for (const std::vector<LookStep>& steps : look_alternatives(transform.getLooks()))
            add_path(transform.getSrc(), steps, transform.getDst(), inverse);
    }

    void add_view(const library::DisplayViewTransform& transform, bool inverse) {
        const char* display = transform.getDisplay();
        const char* view = transform.getView();
        // A view can show a named transform, which is then applied forwards.
        SpaceType target = add_reference(get_display_color_space_name(config_, display, view), inverse);
        const char* name = config_->getDisplayViewTransformName(display, view);
        if (const ConstViewTransformRcPtr view_transform = config_->getViewTransform(name)) {
            for (const bool backwards : {false, true})
                add_node(NodeKind::VIEW_TRANSFORM, view_transform->getName(), backwards);
            target = view_transform->getReferenceSpaceType();
        }
        std::vector<LookStep> looks;
        if (!transform.getLooksBypass())
            looks = all_look_steps(config_->getDisplayViewLooks(display, view));
        const SpaceType source = add_reference(transform.getSrc(), inverse);
        add_crossing(add_look_steps(looks, source, inverse), target, inverse);
    }

    /// From one colour space through looks to another.
    void add_path(const char* source, const std::vector<LookStep>& looks, const std::string& destination,
                  bool inverse) {
        const SpaceType from = add_reference(source, inverse);
        const SpaceType through = add_look_steps(looks, from, inverse);
        add_crossing(through, add_reference(destination, !inverse), inverse);
    }

    /// Returns the reference type of the last look's process space.
    SpaceType add_look_steps(const std::vector<LookStep>& looks, SpaceType current, bool inverse) {
        for (const LookStep& step : looks) {
            const library::ConstLookRcPtr look = config_->getLook(step.name.c_str());
            if (!look)
                continue;
            add_node(NodeKind::LOOK, look->getName(), step.inverse != inverse);
            // When it looks for context variables, the library disregards that the transform is inverse.
            if (inverse)
                add_node(NodeKind::LOOK, look->getName(), step.inverse);
            const ConstColorSpaceRcPtr process_space = config_->getColorSpace(look->getProcessSpace());
            const SpaceType next =
                process_space ? SpaceType(process_space->getReferenceSpaceType()) : current;
            add_crossing(current, next, inverse);
            current = next;
        }
        return current;
    }

    /// Between the scene's and the display's reference space lies the default view transform.
    void add_crossing(SpaceType from, SpaceType to, bool inverse) {
        if (!from || !to || *from == *to)
            return;
        const bool to_scene = (*to == library::REFERENCE_SPACE_SCENE);
        if (const ConstViewTransformRcPtr crossing = config_->getDefaultSceneToDisplayViewTransform())
            add_node(NodeKind::VIEW_TRANSFORM, crossing->getName(), to_scene != inverse);
    }

    /// A colour space by name, role or alias, or else a named transform. Returns the former's reference type.
    SpaceType add_reference(const std::string& name, bool inverse) {
        const char* resolved = context_->resolveStringVar(name.c_str());
        if (const ConstColorSpaceRcPtr space = config_->getColorSpace(resolved)) {
            add_node(NodeKind::COLOR_SPACE, space->getName(), false);
            return space->getReferenceSpaceType();
        }
        if (const ConstNamedTransformRcPtr named = config_->getNamedTransform(resolved))
            add_node(NodeKind::NAMED_TRANSFORM, named->getName(), inverse);
        return std::nullopt;
    }

    void add_node(NodeKind kind, const char* name, bool inverse) {
        found_.nodes.push_back({kind, name, inverse});
    }

    const ConstConfigRcPtr& config_;
    const library::ConstContextRcPtr& context_;
    Dependencies found_;
};

void add_space(DependencyCollector& collector, const library::ColorSpace& space) {
    const ConstTransformRcPtr to_reference = space.getTransform(COLORSPACE_DIR_TO_REFERENCE);
    const ConstTransformRcPtr from_reference = space.getTransform(COLORSPACE_DIR_FROM_REFERENCE);
    for (const ConstTransformRcPtr& transform : {to_reference, from_reference})
        if (transform)
            collector.add(transform, false);
    // A lone transform serves both ways, which matters for the looks and named transforms in it.
    if (!to_reference != !from_reference)
        collector.add_other_uses(to_reference ? to_reference : from_reference);
}

} // namespace

TransformGraph::TransformGraph(const ConstConfigRcPtr& config)
    : config_(config), context_(config->getCurrentContext()) {}

Dependencies TransformGraph::dependencies_of(const GraphNode& node) const {
    DependencyCollector collector(config_, context_);
    const char* name = node.name.c_str();
    switch (node.kind) {
    case NodeKind::COLOR_SPACE:
        add_space(collector, *config_->getColorSpace(name));
        break;
    case NodeKind::LOOK: {
        const library::ConstLookRcPtr look = config_->getLook(name);
        collector.add_process_space(look->getProcessSpace());
        collector.add_one_of(look->getTransform(), look->getInverseTransform(), node.inverse);
        break;
    }
    case NodeKind::NAMED_TRANSFORM: {
        const ConstNamedTransformRcPtr named = config_->getNamedTransform(name);
        collector.add_one_of(named->getTransform(TRANSFORM_DIR_FORWARD),
                             named->getTransform(TRANSFORM_DIR_INVERSE), node.inverse);
        break;
    }
    case NodeKind::VIEW_TRANSFORM:
        if (const ConstViewTransformRcPtr view_transform = config_->getViewTransform(name))
            collector.add_one_of(view_transform->getTransform(library::VIEWTRANSFORM_DIR_FROM_REFERENCE),
                                 view_transform->getTransform(library::VIEWTRANSFORM_DIR_TO_REFERENCE),
                                 node.inverse);
        break;
    }
    return collector.take();
}

Dependencies TransformGraph::dependencies_of(const ConstTransformRcPtr& transform) const {
    DependencyCollector collector(config_, context_);
    collector.add(transform, false);
    return collector.take();
}

} // namespace ocio
