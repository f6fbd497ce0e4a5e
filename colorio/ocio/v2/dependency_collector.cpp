#include "colorio/ocio/dependency_collector.h"

#include <optional>

#include "colorio/ocio/config.h"

namespace ocio {

namespace {

using library::ConstNamedTransformRcPtr;
using library::ConstViewTransformRcPtr;

class CollectorOfV2 final : public DependencyCollector {
public:
    explicit CollectorOfV2(const ConstConfigRcPtr& config) : DependencyCollector(config) {}

    void add_other_node(const GraphNode& node) override {
        const char* name = node.name.c_str();
        if (node.kind == NodeKind::NAMED_TRANSFORM) {
            const ConstNamedTransformRcPtr named = config()->getNamedTransform(name);
            add_one_of(named->getTransform(TRANSFORM_DIR_FORWARD), named->getTransform(TRANSFORM_DIR_INVERSE),
                       node.inverse);
        } else if (const ConstViewTransformRcPtr view_transform = config()->getViewTransform(name)) {
            add_one_of(view_transform->getTransform(library::VIEWTRANSFORM_DIR_FROM_REFERENCE),
                       view_transform->getTransform(library::VIEWTRANSFORM_DIR_TO_REFERENCE), node.inverse);
        }
    }

protected:
    void add_path(const std::string& source, const std::vector<LookStep>& looks,
                  const std::string& destination, bool inverse) override {
        const SpaceType from = add_reference(source, inverse);
        const SpaceType through = add_look_steps(looks, from, inverse);
        add_crossing(through, add_reference(destination, !inverse), inverse);
    }

    void add_other_transform(const library::Transform& transform, bool inverse) override {
        if (const auto* view = dynamic_cast<const library::DisplayViewTransform*>(&transform))
            add_view(*view, inverse);
    }

    std::unique_ptr<DependencyCollector> create_another() const override {
        return std::make_unique<CollectorOfV2>(config());
    }

private:
    /// Empty for a name that is not a color space.
    using SpaceType = std::optional<library::ReferenceSpaceType>;

    void add_view(const library::DisplayViewTransform& transform, bool inverse) {
        const char* display = transform.getDisplay();
        const char* view = transform.getView();
        add_texts({transform.getSrc(), display, view});
        // A view can show a named transform, which is then applied forwards.
        SpaceType target = add_reference(get_display_color_space_name(config(), display, view), inverse);
        const char* name = config()->getDisplayViewTransformName(display, view);
        if (const ConstViewTransformRcPtr view_transform = config()->getViewTransform(name)) {
            for (const bool backwards : {false, true})
                add_node(NodeKind::VIEW_TRANSFORM, view_transform->getName(), backwards);
            target = view_transform->getReferenceSpaceType();
        }
        std::vector<LookStep> looks;
        if (!transform.getLooksBypass())
            looks = all_look_steps(config()->getDisplayViewLooks(display, view));
        const SpaceType source = add_reference(transform.getSrc(), inverse);
        add_crossing(add_look_steps(looks, source, inverse), target, inverse);
    }

    /// Returns the reference type of the last look's process space.
    SpaceType add_look_steps(const std::vector<LookStep>& looks, SpaceType current, bool inverse) {
        for (const LookStep& step : looks) {
            const library::ConstLookRcPtr look = config()->getLook(step.name.c_str());
            if (!look)
                continue;
            add_node(NodeKind::LOOK, look->getName(), step.inverse != inverse);
            // When it looks for context variables, OpenColorIO disregards that the transform is inverse.
            if (inverse)
                add_node(NodeKind::LOOK, look->getName(), step.inverse);
            const ConstColorSpaceRcPtr process_space = config()->getColorSpace(look->getProcessSpace());
            const SpaceType next =
                process_space ? SpaceType(process_space->getReferenceSpaceType()) : current;
            add_crossing(current, next, inverse);
            current = next;
        }
        return current;
    }

    /// The default view transform leads from the scene's to the display's reference space.
    void add_crossing(SpaceType from, SpaceType to, bool inverse) {
        if (!from || !to || *from == *to)
            return;
        const bool to_scene = (*to == library::REFERENCE_SPACE_SCENE);
        if (const ConstViewTransformRcPtr crossing = config()->getDefaultSceneToDisplayViewTransform())
            add_node(NodeKind::VIEW_TRANSFORM, crossing->getName(), to_scene != inverse);
    }

    /// A color space, or else a named transform. Returns the former's reference type.
    SpaceType add_reference(const std::string& name, bool inverse) {
        if (const ConstColorSpaceRcPtr space = find_space(name)) {
            add_node(NodeKind::COLOR_SPACE, space->getName(), false);
            return space->getReferenceSpaceType();
        }
        if (const ConstNamedTransformRcPtr named = config()->getNamedTransform(resolve(name).c_str()))
            add_node(NodeKind::NAMED_TRANSFORM, named->getName(), inverse);
        return std::nullopt;
    }
};

} // namespace

std::vector<GraphNode> list_own_nodes(const ConstConfigRcPtr& config) {
    constexpr auto OF_SCENE_AND_DISPLAY = library::SEARCH_REFERENCE_SPACE_ALL;
    std::vector<GraphNode> nodes;
    for (int i = 0; i < config->getNumColorSpaces(OF_SCENE_AND_DISPLAY, library::COLORSPACE_ALL); ++i)
        nodes.push_back({NodeKind::COLOR_SPACE,
                         config->getColorSpaceNameByIndex(OF_SCENE_AND_DISPLAY, library::COLORSPACE_ALL, i),
                         false});
    for (int i = 0; i < config->getNumNamedTransforms(library::NAMEDTRANSFORM_ALL); ++i)
        add_both_ways(NodeKind::NAMED_TRANSFORM,
                      config->getNamedTransformNameByIndex(library::NAMEDTRANSFORM_ALL, i), nodes);
    for (int i = 0; i < config->getNumViewTransforms(); ++i)
        add_both_ways(NodeKind::VIEW_TRANSFORM, config->getViewTransformNameByIndex(i), nodes);
    return nodes;
}

std::unique_ptr<DependencyCollector> create_dependency_collector(const ConstConfigRcPtr& config) {
    return std::make_unique<CollectorOfV2>(config);
}

} // namespace ocio
