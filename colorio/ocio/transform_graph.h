#pragma once

#include <string>
#include <vector>

#include "colorio/ocio/types.h"

namespace ocio {

/// What transforms of a config can refer to by name.
enum class NodeKind { COLOR_SPACE, LOOK, NAMED_TRANSFORM, VIEW_TRANSFORM };

struct GraphNode {
    NodeKind kind;
    std::string name; ///< as the config spells it, never a role or an alias
    bool inverse;     ///< applied backwards; always false for color spaces, which are followed both ways

    bool operator==(const GraphNode& other) const {
        return kind == other.kind && name == other.name && inverse == other.inverse;
    }
};

/// A unique key of the node.
std::string key_of(const GraphNode& node);

/// What a file transform reads, as the config spells it, variables unresolved.
struct FileUse {
    std::string source;
    std::string cccid; ///< id or position of a color correction in the file; empty for none
};

/// What one node, or one transform, refers to directly.
struct Dependencies {
    std::vector<GraphNode> nodes;   ///< in order, once per use
    std::vector<FileUse> files;     ///< of file transforms
    std::vector<std::string> texts; ///< names and paths that may hold context variables, unresolved
    std::size_t transforms = 0;     ///< how many transforms it consists of, groups not counted
    std::size_t group_depth = 0;    ///< how deep its groups are nested
};

/// The references between the transforms of a config, as OpenColorIO follows them when it makes a processor:
/// through both transforms of every color space, the looks and spaces of look transforms, and the color
/// space, view transform and looks of views. Names that are not in the config are left out.
class TransformGraph {
public:
    explicit TransformGraph(const ConstConfigRcPtr& config) : config_(config) {}

    /// Every node of the config, inactive color spaces too; looks and the like both ways.
    std::vector<GraphNode> get_nodes() const;

    Dependencies dependencies_of(const GraphNode& node) const;
    Dependencies dependencies_of(const ConstTransformRcPtr& transform) const;

private:
    ConstConfigRcPtr config_;
};

} // namespace ocio
