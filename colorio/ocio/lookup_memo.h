#pragma once

#include <memory>
#include <string>
#include <unordered_map>

#include "colorio/ocio/transform_graph.h"
#include "colorio/ocio/types.h"

namespace ocio {

/// Remembers, for the thread that made it, what conversions look up in one config: the library searches all
/// color spaces for each name. For whoever makes thousands of conversions; the config must stay as it is
/// meanwhile. The latest one counts, and the one before it again after that.
class LookupMemo {
public:
    explicit LookupMemo(ConstConfigRcPtr config);
    ~LookupMemo();
    LookupMemo(const LookupMemo&) = delete;
    LookupMemo& operator=(const LookupMemo&) = delete;

    /// That of this thread, if it is for `config`; else null.
    static LookupMemo* find(const ConstConfigRcPtr& config);

    ConstColorSpaceRcPtr find_space(const std::string& name);
    std::shared_ptr<const Dependencies> dependencies_of(const TransformGraph& graph, const GraphNode& node);

private:
    const ConstConfigRcPtr config_;
    LookupMemo* const before_;
    std::unordered_map<std::string, ConstColorSpaceRcPtr> spaces_;
    std::unordered_map<std::string, std::shared_ptr<const Dependencies>> dependencies_;
};

/// As `getColorSpace` of the library answers, by way of the memo if there is one.
ConstColorSpaceRcPtr find_space(const ConstConfigRcPtr& config, const std::string& name);

} // namespace ocio
