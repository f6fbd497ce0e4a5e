#include "colorio/ocio/conversion_check.h"

#include <algorithm>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

#include "colorio/ocio/context_variables.h"
#include "colorio/ocio/error.h"
#include "colorio/ocio/file_location.h"
#include "colorio/ocio/lookup_memo.h"
#include "colorio/ocio/lut_words.h"
#include "colorio/ocio/transform_graph.h"

namespace ocio {

namespace {

/// Real configs nest a dozen transforms. OpenColorIO uses up to 4 KB of stack for each.
constexpr std::size_t MAX_DEPTH = 256;
/// Transforms of a conversion, each counted as often as OpenColorIO visits it. Real ones have some dozens.
constexpr std::size_t MAX_TRANSFORMS = 20000;

/// Names shown of a chain that is too long to be listed.
constexpr std::size_t MAX_NAMES_SHOWN = 8;

/// Visits what a conversion reaches, depth first and without recursion.
class ConversionWalk {
public:
    explicit ConversionWalk(const ConstConfigRcPtr& config)
        : config_(config), graph_(config), memo_(LookupMemo::find(config)) {}

    void run(const ConstTransformRcPtr& conversion) {
        enter({}, std::make_shared<const Dependencies>(graph_.dependencies_of(conversion)));
        while (!path_.empty()) {
            Step& step = path_.back();
            if (step.next < step.dependencies->nodes.size())
                follow(step.dependencies->nodes[step.next++]);
            else
                leave();
        }
    }

    /// Sources of every file transform reached, each with the ids of the color corrections read from it.
    const std::map<std::string, std::set<std::string>>& files() const { return files_; }
    std::vector<GraphNode> take_nodes() { return std::move(nodes_); }

private:
    /// A node whose dependencies are all visited.
    struct Extent {
        std::size_t depth = 0;
        std::size_t transforms = 0;
    };

    struct Step {
        std::string key; ///< empty for the conversion itself
        std::string name;
        std::shared_ptr<const Dependencies> dependencies;
        std::size_t next;
        Extent extent;           ///< of the part visited so far
        std::size_t depth_above; ///< of the steps before this one
    };

    std::shared_ptr<const Dependencies> dependencies_of(const GraphNode& node) const {
        if (memo_)
            return memo_->dependencies_of(node, [&] { return graph_.dependencies_of(node); });
        return std::make_shared<const Dependencies>(graph_.dependencies_of(node));
    }

    void follow(const GraphNode& node) {
        const std::string key = key_of(node);
        const auto known = visited_.find(key);
        if (known == visited_.end()) {
            nodes_.push_back(node);
            return enter({key, node.name}, dependencies_of(node));
        }
        if (!known->second)
            refuse_cycle(key);
        absorb(*known->second);
    }

    void enter(const std::pair<std::string, std::string>& identity,
               std::shared_ptr<const Dependencies> dependencies) {
        const std::size_t above =
            path_.empty() ? 0 : path_.back().depth_above + 1 + path_.back().dependencies->group_depth;
        for (const std::string& text : dependencies->texts)
            resolve_variables(config_, text);
        for (const FileUse& file : dependencies->files)
            files_[file.source].insert(file.cccid);
        visited_.emplace(identity.first, std::nullopt);
        const Extent own{1 + dependencies->group_depth, dependencies->transforms};
        path_.push_back({identity.first, identity.second, std::move(dependencies), 0, own, above});
        require_bounds(path_.back());
    }

    void leave() {
        const Step done = std::move(path_.back());
        path_.pop_back();
        visited_[done.key] = done.extent;
        if (!path_.empty())
            absorb(done.extent);
    }

    /// Adds a finished dependency to the step that refers to it.
    void absorb(const Extent& dependency) {
        Step& step = path_.back();
        step.extent.depth =
            std::max(step.extent.depth, 1 + step.dependencies->group_depth + dependency.depth);
        step.extent.transforms += dependency.transforms;
        require_bounds(step);
    }

    void require_bounds(const Step& step) const {
        if (step.depth_above + step.extent.depth > MAX_DEPTH)
            refuse("nests more than " + std::to_string(MAX_DEPTH) + " transforms");
        if (step.extent.transforms > MAX_TRANSFORMS)
            refuse("takes more than " + std::to_string(MAX_TRANSFORMS) + " transforms");
    }

    [[noreturn]] void refuse(const std::string& reason) const {
        const std::string names = names_from(1, MAX_NAMES_SHOWN);
        throw_error(diagnostics::Code::CONFIG_TOO_COMPLEX,
                    "the conversion " + reason + (names.empty() ? "" : ": " + names));
    }

    [[noreturn]] void refuse_cycle(const std::string& key) const {
        std::size_t first = 0;
        while (path_[first].key != key)
            ++first;
        throw_error(diagnostics::Code::CONFIG_CYCLE,
                    "the config contains a cycle: " + names_from(first, path_.size()) + " -> " +
                        path_[first].name,
                    path_[first].name);
    }

    /// "a -> b -> c" along the path, from a position on.
    std::string names_from(std::size_t first, std::size_t count) const {
        std::string names;
        for (std::size_t i = first; i < path_.size() && i < first + count; ++i)
            names += (names.empty() ? "" : " -> ") + path_[i].name;
        return path_.size() > first + count ? names + " -> ..." : names;
    }

    ConstConfigRcPtr config_;
    TransformGraph graph_;
    LookupMemo* memo_;
    std::vector<Step> path_;
    std::unordered_map<std::string, std::optional<Extent>> visited_; ///< empty while on the path
    std::map<std::string, std::set<std::string>> files_;
    std::vector<GraphNode> nodes_;
};

} // namespace

ConversionParts check_conversion(const ConstConfigRcPtr& config, const ConstTransformRcPtr& conversion) {
    ConversionWalk walk(config);
    walk.run(conversion);
    ConversionParts parts{walk.take_nodes(), {}, {}, {}};
    for (const auto& [source, cccids] : walk.files()) {
        const std::string path = locate_file(config, source);
        if (path.empty()) {
            parts.missing.push_back(source);
            continue;
        }
        require_readable_lut(path);
        parts.files.emplace(source, path);
        for (const std::string& cccid : cccids)
            parts.uses.push_back({source, cccid});
    }
    return parts;
}

} // namespace ocio
