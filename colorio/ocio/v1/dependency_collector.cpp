#include "colorio/ocio/dependency_collector.h"

#include "colorio/ocio/config.h"

namespace ocio {

namespace {

class CollectorOfV1 final : public DependencyCollector {
public:
    explicit CollectorOfV1(const ConstConfigRcPtr& config) : DependencyCollector(config) {}

    void add_other_node(const GraphNode&) override {}

protected:
    void add_path(const std::string& source, const std::vector<LookStep>& looks,
                  const std::string& destination, bool inverse) override {
        add_reference(source);
        for (const LookStep& step : looks)
            if (const library::ConstLookRcPtr look = config()->getLook(step.name.c_str()))
                add_node(NodeKind::LOOK, look->getName(), step.inverse != inverse);
        add_reference(destination);
    }

    void add_other_transform(const library::Transform& transform, bool inverse) override {
        const auto* view = dynamic_cast<const library::DisplayTransform*>(&transform);
        if (!view)
            return;
        add_texts({view->getInputColorSpaceName(), view->getDisplay(), view->getView()});
        const std::string looks = config()->getDisplayLooks(view->getDisplay(), view->getView());
        add_path(view->getInputColorSpaceName(), all_look_steps(looks),
                 get_display_color_space_name(config(), view->getDisplay(), view->getView()), inverse);
    }

    std::unique_ptr<DependencyCollector> create_another() const override {
        return std::make_unique<CollectorOfV1>(config());
    }

private:
    void add_reference(const std::string& name) {
        if (const ConstColorSpaceRcPtr space = find_space(name))
            add_node(NodeKind::COLOR_SPACE, space->getName(), false);
    }
};

} // namespace

std::vector<GraphNode> list_own_nodes(const ConstConfigRcPtr& config) {
    std::vector<GraphNode> nodes;
    for (int i = 0; i < config->getNumColorSpaces(); ++i)
        nodes.push_back({NodeKind::COLOR_SPACE, config->getColorSpaceNameByIndex(i), false});
    return nodes;
}

std::unique_ptr<DependencyCollector> create_dependency_collector(const ConstConfigRcPtr& config) {
    return std::make_unique<CollectorOfV1>(config);
}

} // namespace ocio
