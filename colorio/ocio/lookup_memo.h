#pragma once

#include <functional>
#include <memory>
#include <string>
#include <unordered_map>
#include <utility>

#include "colorio/ocio/graph_node.h"
#include "colorio/ocio/types.h"

namespace ocio {

/// A cache, for the thread that made it, of what conversions look up in one config: OpenColorIO searches all
/// color spaces for each name. For code that makes thousands of conversions; the config must not change
/// meanwhile. The innermost one is used.
class LookupMemo {
public:
    explicit LookupMemo(ConstConfigRcPtr config);
    ~LookupMemo();
    LookupMemo(const LookupMemo&) = delete;
    LookupMemo& operator=(const LookupMemo&) = delete;

    /// The one of this thread, if it is for `config`; else null.
    static LookupMemo* find(const ConstConfigRcPtr& config);

    ConstColorSpaceRcPtr find_space(const std::string& name);
    /// Takes note of a color space that was looked up before.
    void add_space(const std::string& name, ConstColorSpaceRcPtr space) {
        spaces_.emplace(name, std::move(space));
    }
    /// What `find` finds for the node when it is asked for first.
    std::shared_ptr<const Dependencies> dependencies_of(const GraphNode& node,
                                                        const std::function<Dependencies()>& find);

private:
    const ConstConfigRcPtr config_;
    LookupMemo* const before_;
    std::unordered_map<std::string, ConstColorSpaceRcPtr> spaces_;
    std::unordered_map<std::string, std::shared_ptr<const Dependencies>> dependencies_;
};

/// OpenColorIO's `getColorSpace`, through the memo if there is one.
ConstColorSpaceRcPtr find_space(const ConstConfigRcPtr& config, const std::string& name);

} // namespace ocio
