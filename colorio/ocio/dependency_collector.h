#pragma once

#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

#include "colorio/ocio/graph_node.h"
#include "colorio/ocio/look_list.h"
#include "colorio/ocio/types.h"

namespace ocio {

/// Collects what transforms refer to. Subclasses add what only one version of OpenColorIO has.
class DependencyCollector {
public:
    virtual ~DependencyCollector() = default;

    /// Walks a transform and the groups in it.
    void add(const ConstTransformRcPtr& root, bool inverse);
    /// Both transforms of a color space.
    void add_space(const library::ColorSpace& space);
    /// The process space of a look, and its transform for that direction.
    void add_look(const library::Look& look, bool inverse);
    /// Objects of newer versions of OpenColorIO: named transforms and view transforms.
    virtual void add_other_node(const GraphNode& node) = 0;

    Dependencies take() { return std::move(found_); }

protected:
    explicit DependencyCollector(const ConstConfigRcPtr& config) : config_(config) {}

    /// From one color space through looks to another.
    virtual void add_path(const std::string& source, const std::vector<LookStep>& looks,
                          const std::string& destination, bool inverse) = 0;
    /// A transform that is neither a group nor one of files, color spaces or looks.
    virtual void add_other_transform(const library::Transform& transform, bool inverse) = 0;
    virtual std::unique_ptr<DependencyCollector> create_another() const = 0;

    /// One of a pair of transforms that are inverse to each other: the one for `inverse`, or without it the
    /// other one, inverted.
    void add_one_of(const ConstTransformRcPtr& forward, const ConstTransformRcPtr& backward, bool inverse);
    void add_node(NodeKind kind, const char* name, bool inverse);
    /// Notes what OpenColorIO may replace context variables in.
    void add_texts(std::initializer_list<const char*> texts);
    /// The color space of a name, a role or an alias, after resolving variables; null for none.
    ConstColorSpaceRcPtr find_space(const std::string& name) const;
    std::string resolve(const std::string& name) const;
    const ConstConfigRcPtr& config() const { return config_; }

private:
    struct Pending {
        ConstTransformRcPtr transform;
        bool inverse;
        std::size_t depth;
    };

    void push_members(const library::GroupTransform& group, bool inverse, std::size_t depth,
                      std::vector<Pending>& pending);
    void add_single(const library::Transform& transform, bool inverse);
    void add_other_uses(const ConstTransformRcPtr& transform);

    ConstConfigRcPtr config_;
    Dependencies found_;
};

/// Adds the node forwards and backwards.
void add_both_ways(NodeKind kind, const char* name, std::vector<GraphNode>& nodes);

/// Color spaces, inactive ones included, and, in newer versions of OpenColorIO, named transforms and view
/// transforms, in both directions.
std::vector<GraphNode> list_own_nodes(const ConstConfigRcPtr& config);

/// The collector for the version of OpenColorIO in use.
std::unique_ptr<DependencyCollector> create_dependency_collector(const ConstConfigRcPtr& config);

} // namespace ocio
