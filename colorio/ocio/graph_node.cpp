#include "colorio/ocio/graph_node.h"

namespace ocio {

std::string key_of(const GraphNode& node) {
    const char kind = static_cast<char>('0' + static_cast<int>(node.kind) * 2 + (node.inverse ? 1 : 0));
    return kind + node.name;
}

} // namespace ocio
