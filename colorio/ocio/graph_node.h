#pragma once

#include <cstddef>
#include <string>
#include <vector>

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

} // namespace ocio
